// What an MT-SICS balance says of itself.

#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

}  // namespace

void MtSics::powerUp() {
    adjusting_ = false;
    if (switches_.isOn("power-on-line")) saySerialNumber();
}

// > "@"   < I4 A "1126493049"; what is waited for and repeated ends, the tare stays
void MtSics::reset() {
    cancelAll();
    adjusting_ = false;
    balance().showWeight();
    if (switches_.isOn("reset-answer")) saySerialNumber();
}

/// "I2 A" and the texts, "I2 I" while it is busy.
void MtSics::answer(const std::string& id, const std::string& texts) {
    say(id + (isBusy() || adjusting_ ? " I" : " A " + texts));
}

// > "I0"  < a line I0 B 0 "I0" for each command; the last one is I0 A 2 "UPD"
void MtSics::sayCommands() {
    if (isBusy() || adjusting_) return say("I0 I");
    std::vector<std::string> rows;
    for (const Command& command : commands())
        if (command.isAnswered)
            rows.push_back(std::to_string(command.level) + " " + quoted(command.name));
    for (const std::string& row : rows)
        say((&row == &rows.back() ? "I0 A " : "I0 B ") + row);
}

// > "I1"  < I1 A "0123" "2.30" "2.22" "2.33" "2.20": the levels, then the version of each
void MtSics::sayLevels() {
    answer("I1", model_.levels);
}

// > "I2"  < I2 A "XS204 Excellence 220.0090 g": type, capacity with the overrange, unit
void MtSics::sayType() {
    BalanceData data = balance().data();
    data.gramsPerUnit = 1;
    data.countsPieces = false;
    Reading full = BalanceModel(data).read();
    full.value = data.capacity;
    answer("I2", quoted(model_.type + " " + full.digits() + " g"));
}

// > "I3"  < I3 A "1.10 18.6.4.1361.772": version of the software, number of the type
void MtSics::saySoftware() {
    answer("I3", quoted(model_.software));
}

// > "I4"  < I4 A "1126493049"
void MtSics::sendSerialNumber() {
    answer("I4", quoted(switches_.text("serial-number")));
}

/// Unasked, too: after the reset and when the power comes.
void MtSics::saySerialNumber() {
    say("I4 A " + quoted(switches_.text("serial-number")));
}

// > "I5"  < I5 A "11671158C": 8 digits and an index
void MtSics::saySoftwareNumber() {
    answer("I5", quoted(model_.softwareNumber));
}

// > "I11" < I11 A "WXS205SDU"
void MtSics::sayModel() {
    answer("I11", quoted(model_.designation));
}

// > I10 "LINE 4"   < "I10 A";  > "I10"   < I10 A "LINE 4"; it outlasts the mains
void MtSics::identify(const std::string& parameters) {
    constexpr std::size_t longestName = 20;
    if (parameters.empty()) return answer("I10", quoted(name_));
    const auto text = quotedText(parameters);
    if (!text || text->size() > longestName) return say("I10 L");
    name_ = *text;
    say("I10 A");
}

}  // namespace simulator
