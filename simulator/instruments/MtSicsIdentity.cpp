// What an MT-SICS balance says of itself.

#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

std::string Quoted(const std::string& text) {
    return '"' + text + '"';
}

}  // namespace

void MtSics::PowerUp() {
    adjusting_ = false;
    startedAt_ = Now();
    if (switches_.IsOn("power-on-line")) SaySerialNumber();
}

// > "@"   < I4 A "1126493049"; what is waited for and repeated ends, the tare stays
void MtSics::Reset() {
    EndAll();
    Balance().ShowWeight();
    if (switches_.IsOn("reset-answer")) SaySerialNumber();
}

/// What is waited for, repeated and adjusted ends.
void MtSics::EndAll() {
    CancelAll();
    adjusting_ = false;
}

// > "C"   < "C B" "C A"   as the reset, but without one
void MtSics::EndCommands() {
    EndAll();
    Say("C B");
    Say("C A");
}

/// "I2 A" and the texts, "I2 I" while it is busy.
void MtSics::Answer(const std::string& id, const std::string& texts) {
    Say(id + (IsBusy() || adjusting_ ? " I" : " A " + texts));
}

// > "I0"  < a line I0 B 0 "I0" for each command; the last one is I0 A 2 "UPD"
void MtSics::SayCommands() {
    if (IsBusy() || adjusting_) return Say("I0 I");
    std::vector<std::string> rows;
    for (const Command& command : Commands())
        if (command.isAnswered)
            rows.push_back(std::to_string(command.level) + " " + Quoted(command.name));
    for (const std::string& row : rows)
        Say((&row == &rows.back() ? "I0 A " : "I0 B ") + row);
}

// > "I1"  < I1 A "0123" "2.30" "2.22" "2.33" "2.20": the levels, then the version of each
void MtSics::SayLevels() {
    Answer("I1", model_.levels);
}

// > "I2"  < I2 A "XS204 Excellence 220.0090 g": type, capacity with the overrange, unit
void MtSics::SayType() {
    BalanceData data = Balance().Data();
    data.gramsPerUnit = 1;
    data.countsPieces = false;
    Indication full = BalanceModel(data).Read();
    full.value = data.capacity;
    Answer("I2", Quoted(model_.type + " " + full.Digits() + " g"));
}

// > "I3"  < I3 A "1.10 18.6.4.1361.772": version of the software, number of the type
void MtSics::SaySoftware() {
    Answer("I3", Quoted(model_.software));
}

// > "I4"  < I4 A "1126493049"
void MtSics::SendSerialNumber() {
    Answer("I4", Quoted(switches_.Text("serial-number")));
}

/// Unasked, too: after the reset and when the power comes.
void MtSics::SaySerialNumber() {
    Say("I4 A " + Quoted(switches_.Text("serial-number")));
}

// > "I5"  < I5 A "11671158C": 8 digits and an index
void MtSics::SaySoftwareNumber() {
    Answer("I5", Quoted(model_.softwareNumber));
}

// > "I11" < I11 A "WXS205SDU"
void MtSics::SayModel() {
    Answer("I11", Quoted(model_.designation));
}

// > "I15" < "I15 A 123014": minutes since it was switched on
void MtSics::SayMinutes() {
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(Now() - startedAt_);
    Answer("I15", std::to_string(minutes.count()));
}

// > I10 "LINE 4"   < "I10 A";  > "I10"   < I10 A "LINE 4"; it outlasts the mains
void MtSics::Identify(const std::string& parameters) {
    constexpr std::size_t longestName = 20;
    if (parameters.empty()) return Answer("I10", Quoted(name_));
    const auto text = QuotedText(parameters);
    if (!text || text->size() > longestName) return Say("I10 L");
    name_ = *text;
    Say("I10 A");
}

}  // namespace simulator
