// Radwag, the command set that the AS, PS, R, WTC, WTB and PUE C/31 series have in common, as the
// chapter "Communication protocol" of their manuals describes it. Commands and answers end in CR
// LF. A command is confirmed when it begins and answered when it is done; the weights come in
// frames:
//   > "T"    < "T A"  and at rest "T D", "T v" out of the tare range, "T E" never at rest
//   > "S"    < "S A"  and at rest a frame, "S E" never at rest
//   > "SI"   < a frame at once
//   > "SU", "SUI"   the same in the unit that "US mg" has chosen
// A command that can't be carried out now gets "I", one that does not exist "ES". PC lists those
// that exist.

#include <algorithm>

#include "simulator/Catalog.h"
#include "simulator/Text.h"
#include "simulator/instruments/RadwagFrame.h"

namespace simulator {
namespace {

/// The working modes that this balance has, by their numbers.
constexpr int kWeighing = 1;
constexpr int kCounting = 2;

std::string Quoted(const std::string& text) {
    return '"' + text + '"';
}

class Radwag : public Dialect {
 public:
    Radwag(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        for (const Command& command : Commands())
            if (command.isKnown) On(command.name, this, command.does);
    }

    void PowerUp() override {
        occupied_ = false;
        FreeKeys();
    }

 protected:
    void Unknown(const std::string& command) override {
        if (!command.empty()) Say("ES");
    }
    // < "         18.5 g  "   18 bytes with the line end: no command letters
    void PrintKey() override {
        WhenStable(
            switches_.TimeOf("stability-time-out"), [this] { Say(RadwagMass(ReadInUnit())); },
            [] {});
    }
    bool Interrupts(const std::string& /*command*/) const override {
        return switches_.Text("during-wait") == "refuse";
    }
    /// While it waits for the pan or adjusts, nothing else is accessible.
    void Execute(const std::string& command) override {
        const std::string name = FirstWord(command).first;
        if (occupied_ && Knows(name)) return Say(name + " I");
        Dialect::Execute(command);
    }

 private:
    struct Command {
        const char* name;
        Does<Radwag> does;
        bool isKnown;
    };

    /// Every command there is, in the order of PC, and whether this series knows it.
    std::vector<Command> Commands() const {
        std::vector<Command> all = WeighingCommands();
        for (const Command& command : FurtherCommands())
            all.push_back(command);
        return all;
    }

    static std::vector<Command> WeighingCommands() {
        return {
            {"Z", &Radwag::Zero, true},
            {"T", &Radwag::Tare, true},
            {"OT", &Radwag::SayTare, true},
            {"UT", &Radwag::PresetTare, true},
            {"S", &Radwag::SendStable, true},
            {"SI", &Radwag::SendImmediately, true},
            {"SU", &Radwag::SendStableInUnit, true},
            {"SUI", &Radwag::SendImmediatelyInUnit, true},
            {"C1", &Radwag::Start, true},
            {"C0", &Radwag::Stop, true},
            {"CU1", &Radwag::StartInUnit, true},
            {"CU0", &Radwag::StopInUnit, true},
        };
    }

    std::vector<Command> FurtherCommands() const {
        const std::string& series = switches_.Text("series");
        const bool isTerminal = series == "wtc";
        const bool isAnalyser = series == "ma";
        const bool hasUnits = series == "ps" || series == "hrp";
        const bool adjusts = isAnalyser || series == "hrp";
        const bool saysWhatItIs = !isTerminal && series != "wpw";
        const bool hasFilters = isAnalyser || series == "ps";
        return {
            {"DH", &Radwag::SetLowLimit, !isTerminal},
            {"UH", &Radwag::SetHighLimit, !isTerminal},
            {"ODH", &Radwag::SayLowLimit, !isTerminal},
            {"OUH", &Radwag::SayHighLimit, !isTerminal},
            {"K1", &Radwag::Block, isTerminal || isAnalyser},
            {"K0", &Radwag::Unblock, isTerminal || isAnalyser},
            {"NB", &Radwag::SaySerialNumber, true},
            {"BN", &Radwag::SaySeries, saysWhatItIs},
            {"FS", &Radwag::SayCapacity, saysWhatItIs},
            {"RV", &Radwag::SaySoftware, saysWhatItIs},
            {"UI", &Radwag::SayUnits, hasUnits},
            {"US", &Radwag::ChooseUnit, hasUnits},
            {"UG", &Radwag::SayUnit, hasUnits},
            {"OMI", &Radwag::SayModes, hasUnits},
            {"OMS", &Radwag::ChooseMode, hasUnits},
            {"OMG", &Radwag::SayMode, hasUnits},
            {"BP", &Radwag::Beep, hasUnits},
            {"SS", &Radwag::PressPrint, isAnalyser},
            {"IC", &Radwag::Adjust, adjusts},
            {"A", &Radwag::SetAutozero, hasFilters},
            {"EV", &Radwag::SetSurroundings, hasFilters},
            {"FIS", &Radwag::SetFilter, hasFilters},
            {"ARS", &Radwag::SetApproval, hasFilters},
            {"LDS", &Radwag::SetLastDigit, hasFilters},
            {"SIA", &Radwag::SendPlatforms, series == "wpw"},
            {"PC", &Radwag::SayCommands, true},
        };
    }

    bool Knows(const std::string& name) const {
        const auto all = Commands();
        return std::any_of(all.begin(), all.end(),
                           [&](const Command& each) { return each.isKnown && name == each.name; });
    }

    // > "PC"  < PC A "Z,T,OT,...", on the WTC "PC -> Z,T,OT,..."
    void SayCommands() {
        std::string list;
        for (const Command& command : Commands())
            if (command.isKnown) list += (list.empty() ? "" : ",") + std::string(command.name);
        Say(switches_.Text("series") == "wtc" ? "PC -> " + list : "PC A " + Quoted(list));
    }

    /// Confirms a command and runs `then` with the pan at rest.
    void AtRest(const std::string& command, Action then) {
        Say(command + " A");
        occupied_ = true;
        WhenStable(
            switches_.TimeOf("stability-time-out"),
            [this, then = std::move(then)] {
                occupied_ = false;
                then();
            },
            [this, command] {
                occupied_ = false;
                Say(command + " E");
            });
    }

    // > "T"   < "T A" "T D"; neither below zero nor above the capacity
    void Tare() {
        AtRest("T", [this] { Say(Balance().Tare() == Outcome::Done ? "T D" : "T v"); });
    }

    // > "Z"   < "Z A" "Z D"
    void Zero() {
        AtRest("Z", [this] { Say(Balance().Zero() == Outcome::Done ? "Z D" : "Z ^"); });
    }

    // > "S"   < "S A" "S    -      8.5 g  "
    void SendStable() {
        AtRest("S", [this] { Say(Frame("S", Balance().Read())); });
    }

    // > "SU"  < "SU A" "SU   -     8500 mg "
    void SendStableInUnit() {
        AtRest("SU", [this] { Say(Frame("SU", ReadInUnit())); });
    }

    // > "SI"  < "SI ?       18.5 g  "
    void SendImmediately() { SayNow("SI", Balance().Read()); }
    void SendImmediatelyInUnit() { SayNow("SUI", ReadInUnit()); }

    void SayNow(const std::string& command, const Indication& indication) {
        if (IsBusy()) return Say(command + " I");
        if (switches_.IsOn("confirms-at-once")) Say(command + " A");
        Say(Frame(command, indication));
    }

    // > "SIA" < "P1 ?      118.5 g  ": a frame for each platform; here there is one
    void SendPlatforms() {
        if (IsBusy()) return Say("SIA I");
        Say(Frame("P1", ReadInUnit()));
    }

    // > "C1"  < "C1 A" and the frames of SI, until "C0"; "CU1" those of SUI
    void Start() {
        Begin("C1", [this] { Say(Frame("SI", Balance().Read())); });
    }
    void StartInUnit() {
        Begin("CU1", [this] { Say(Frame("SUI", ReadInUnit())); });
    }
    void Begin(const std::string& command, const Action& sendFrame) {
        if (IsBusy()) return Say(command + " I");
        Say(command + " A");
        StopRepeating();
        Every(switches_.TimeOf("repeat-interval"), sendFrame);
    }

    void Stop() { End("C0 A"); }
    void StopInUnit() { End("CU0 A"); }
    void End(const std::string& confirmation) {
        StopRepeating();
        Say(confirmation);
    }

    // > "OT"  < "OT     12.50 g   ": without stability and sign, but on the WTC
    void SayTare() {
        const std::string gap = switches_.Text("series") == "wtc" ? "   " : "";
        Say("OT " + gap + RightAligned(Balance().TareDigits(), kRadwagMassColumns) + " " +
            LeftAligned(Balance().Data().unit, kRadwagUnitColumns) + (gap.empty() ? " " : ""));
    }

    // > "UT 12.5"   < "UT OK", "UT I", and "ES" for no number
    void PresetTare(const std::string& text) {
        const auto value = ParseNumber(text);
        if (!value) return Unknown("UT");
        const Outcome outcome = Balance().PresetTare(*value * Balance().Data().gramsPerUnit);
        Say(outcome == Outcome::Done ? "UT OK" : "UT I");
    }

    // > "DH 12.5"   < "DH OK"; > "ODH"  < "DH     12.50 g   "
    void SetLowLimit(const std::string& text) { SetLimit("DH", text, lowLimit_); }
    void SetHighLimit(const std::string& text) { SetLimit("UH", text, highLimit_); }
    void SetLimit(const std::string& name, const std::string& text, double& limit) {
        const auto value = ParseNumber(text);
        if (!value) return Unknown(name);
        limit = *value;
        Say(name + " OK");
    }

    void SayLowLimit() { SayLimit("DH", lowLimit_); }
    void SayHighLimit() { SayLimit("UH", highLimit_); }
    void SayLimit(const std::string& name, double limit) {
        Indication indication = Balance().Read();
        indication.value = limit;
        Say(name + " " + RightAligned(indication.Digits(), kRadwagMassColumns) + " " +
            LeftAligned(indication.unit, kRadwagUnitColumns) + " ");
    }

    // > "K1"  < "K1 OK"  the keys are blocked until "K0" or the next power-off
    void Block() {
        BlockKeys();
        Say("K1 OK");
    }
    void Unblock() {
        FreeKeys();
        Say("K0 OK");
    }

    // > "NB"  < NB A "123456"
    void SaySerialNumber() { Say("NB A " + Quoted(switches_.Text("serial-number"))); }
    void SaySoftware() { Say("RV A " + Quoted(switches_.Text("software"))); }
    void SaySeries() {
        std::string name = switches_.Text("series");
        std::transform(name.begin(), name.end(), name.begin(), ::toupper);
        Say("BN A " + Quoted(name));
    }
    void SayCapacity() {
        Indication full = Balance().Read();
        full.value = Balance().Data().capacity / Balance().Data().gramsPerUnit;
        Say("FS A " + Quoted(full.Digits()));
    }

    // > "UI"  < UI "g, mg, ct" OK
    void SayUnits() {
        std::string list;
        for (const Unit& each : RadwagUnits())
            list += (list.empty() ? "" : ", ") + each.text;
        Say("UI " + Quoted(list) + " OK");
    }

    // > "US mg"   < "US mg OK", "US E"; > "US next"  steps on
    void ChooseUnit(const std::string& text) {
        const auto chosen = std::find_if(RadwagUnits().begin(), RadwagUnits().end(),
                                         [&](const Unit& each) { return each.text == text; });
        if (text == "next")
            unit_ = (unit_ + 1) % RadwagUnits().size();
        else if (chosen != RadwagUnits().end())
            unit_ = static_cast<std::size_t>(chosen - RadwagUnits().begin());
        else
            return Say("US E");
        Say("US " + RadwagUnits()[unit_].text + " OK");
    }

    // > "UG"  < "UG mg OK"
    void SayUnit() { Say("UG " + ReadInUnit().unit + " OK"); }

    // > "OMI" < a line for each mode, between "OMI" and "OK"
    void SayModes() {
        Say("OMI");
        Say(std::to_string(kWeighing) + " \"Weighing\"");
        Say(std::to_string(kCounting) + " \"Parts counting\"");
        Say("OK");
    }

    // > "OMS 2"   < "OMS OK", "OMS E"
    void ChooseMode(const std::string& text) {
        const auto mode = ParseWholeNumber(text, kWeighing, kCounting);
        if (!mode) return Say("OMS E");
        mode_ = *mode;
        Say("OMS OK");
    }
    void SayMode() { Say("OMG " + std::to_string(mode_) + " OK"); }

    // > "BP 350"  < "BP OK"; times above the longest are cut
    void Beep(const std::string& text) {
        constexpr int shortest = 50;
        const auto milliseconds = ParseWholeNumber(text, shortest, 1'000'000);
        Say(milliseconds ? "BP OK" : "BP E");
    }

    // > "A 1" < "A OK", "A E": settings of filter and autozero. What their numbers do to the weight
    // is not documented well enough to be shown.
    void SetAutozero(const std::string& text) { TakeSetting("A", text); }
    void SetSurroundings(const std::string& text) { TakeSetting("EV", text); }
    void SetFilter(const std::string& text) { TakeSetting("FIS", text); }
    void SetApproval(const std::string& text) { TakeSetting("ARS", text); }
    void SetLastDigit(const std::string& text) { TakeSetting("LDS", text); }
    void TakeSetting(const std::string& name, const std::string& text) {
        constexpr int highest = 9;
        Say(name + (ParseWholeNumber(text, 0, highest) ? " OK" : " E"));
    }

    // > "SS"  < "SS OK" and what the print key sends
    void PressPrint() {
        Say("SS OK");
        PrintKey();
    }

    // > "IC"  < "IC A", and "IC D" when it has adjusted, "IC E" when the pan did not rest
    void Adjust() {
        Say("IC A");
        occupied_ = true;
        After(switches_.TimeOf("adjustment-time"), [this] {
            occupied_ = false;
            Say(!IsBusy() && Balance().Read().stable ? "IC D" : "IC E");
        });
    }

    /// In the unit that a host has chosen for the display; S and SI keep to the basic unit.
    Indication ReadInUnit() const {
        const Unit basic{Balance().Data().unit, Balance().Data().gramsPerUnit};
        const Unit pieces{"pcs", 1, true};
        if (mode_ == kCounting) return Balance().ReadIn(pieces);
        return Balance().ReadIn(unit_ == 0 ? basic : RadwagUnits()[unit_]);
    }

    std::string Frame(const std::string& command, const Indication& indication) const {
        return RadwagFrame(command, indication, switches_.Text("frame") == "22");
    }

    Switches switches_;
    bool occupied_ = false;  ///< waits for the pan to rest, or adjusts
    std::size_t unit_ = 0;   ///< of the display, by its place in UI
    int mode_ = kWeighing;
    double lowLimit_ = 0;
    double highLimit_ = 0;
};

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceRadwag>() {
    CatalogEntry entry;
    entry.maker = "Radwag";
    entry.model = "PS, 3000 g";
    entry.line = {9600, 7, Parity::Even, 1, FlowControl::None};
    entry.balance.capacity = 3000;
    entry.balance.readability = 0.01;
    entry.balance.lowestLoad = -300;
    entry.balance.zeroRange = 60;
    entry.switches = RadwagSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Radwag(model, switches));
    };
    return entry;
}

}  // namespace simulator
