// Ohaus: lines with the weight and its unit, "?" while the pan moves.
//
//   > "P"    < "       12.73 g      "   print; waits for the pan to rest in stable-only mode ("1S")
//            < "       12.73 g     ?"
//   > "SP"   the same, always at rest; the Scout Pro does not know it and stays silent
//   > "IP"   the same, at once
//   > "T", "Z"   < "OK!" and then tare and zero; "ES" when refused; older series say nothing
//   > "0A", "5A", "CA"   automatic print off, every 5 s, continuous; newer: "0P", "5P", "CP"
//   > "12.5T", "2U", "1M"   preset tare, unit, mode: the number stands in front
//   > ESC "R"   factory settings, which may be another line rate
//
// What most series print out of range is not documented: here, nothing.

#include <algorithm>

#include "simulator/Catalog.h"
#include "simulator/Text.h"
#include "simulator/instruments/OhausSeries.h"

namespace simulator {
namespace {

constexpr Time kContinuousPrintInterval = 200ms;
constexpr int kLongestInterval = 3600;

/// How long the work of T and Z may take behind its acknowledgement.
constexpr Time kWorkTime = 10s;

class OhausPrint : public Dialect {
 public:
    OhausPrint(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r"), switches_(switches), series_(ChosenOhausSeries(switches)) {
        SetAnswerEnd("\r\n");
        for (const Command& command : Commands())
            if (command.isKnown) On(command.name, this, command.does);
        stableOnly_ = switches_.IsOn("stable-only");
    }

    void PowerUp() override { awake_ = true; }

 protected:
    void Unknown(const std::string& /*command*/) override {
        if (series_.refuses) Say("ES");
    }

    /// A line feed behind the carriage return is dropped.
    std::optional<std::string> CutCommand(std::string& received) override {
        if (!received.empty() && received.front() == '\n') received.erase(0, 1);
        return Dialect::CutCommand(received);
    }

    /// What SP waits for does not keep P, unless that waits, too.
    bool Interrupts(const std::string& command) const override {
        return command == "P" && !stableOnly_;
    }

    void PrintKey() override { Print(); }

    /// A number in front of a command is its parameter: "5A" is looked up as "xA".
    void Execute(const std::string& command) override {
        if (lost_ || command.empty()) return;
        if (IsAsleep() && command != "ON") return Say("ES");
        const std::size_t end = command.find_first_not_of("0123456789.");
        if (end == 0 || end == std::string::npos) return Dialect::Execute(command);
        if (command.find(' ') != std::string::npos) return Unknown(command);
        Dialect::Execute("x" + command.substr(end) + " " + command.substr(0, end));
    }

 private:
    struct Command {
        const char* name;
        Does<OhausPrint> does;
        bool isKnown;
    };

    std::vector<Command> Commands() const {
        const bool isNew = series_.hasPrintCommands;
        const bool isOld = !isNew;
        const bool prints = series_.hasAutoPrintCommands;
        const bool hasStablePrint = isOld ? switches_.IsOn("stable-print") : prints;
        const bool says = series_.saysSettings;
        const bool chooses = series_.choosesModeAndUnit;
        return {
            {"P", &OhausPrint::Print, true},
            {"SP", &OhausPrint::PrintAtRest, hasStablePrint},
            {"IP", &OhausPrint::SayReading, isNew},
            {"T", &OhausPrint::Tare, true},
            {"Z", &OhausPrint::Zero, isNew},
            {"xT", &OhausPrint::PresetTare, series_.presetsTare},
            {"V", &OhausPrint::SaySoftware, true},
            {"PV", &OhausPrint::SaySoftware, isNew},
            {"PSN", &OhausPrint::SaySerialNumber, isNew},
            {"PM", &OhausPrint::SayMode, says},
            {"PU", &OhausPrint::SayUnit, says},
            {"PT", &OhausPrint::SayTare, says},
            {"xM", &OhausPrint::ChooseMode, chooses},
            {"M", &OhausPrint::NextMode, chooses},
            {"xU", &OhausPrint::ChooseUnit, chooses},
            {"U", &OhausPrint::NextUnit, chooses},
            {"xP", &OhausPrint::SetInterval, isNew},
            {"CP", &OhausPrint::PrintContinuously, prints},
            {"SLP", &OhausPrint::PrintEachLoad, prints},
            {"SLZP", &OhausPrint::PrintEachRest, prints},
            {"xRL", &OhausPrint::SetAcknowledging, series_.choosesAcknowledging},
            {"WI", &OhausPrint::MoveDoors, series_.hasDoors},
            {"xFMT", &OhausPrint::ChooseFormat, series_.hasFormats},
            {"ON", &OhausPrint::WakeUp, isNew},
            {"OFF", &OhausPrint::FallAsleep, isNew},
            {"xM", &OhausPrint::ChooseUnit, isOld},
            {"CA", &OhausPrint::PrintContinuously, isOld},
            {"SA", &OhausPrint::PrintEachRest, isOld},
            {"xA", &OhausPrint::SetInterval, isOld},
            {"xS", &OhausPrint::SetStability, series_.choosesStability},
            {"?", &OhausPrint::SayStability, isOld},
            {"LE", &OhausPrint::SayLastError, isOld},
            {"\x1bR", &OhausPrint::RestoreFactorySettings, isOld},
        };
    }

    const std::string& Layout() const {
        const std::string& chosen = switches_.Text("line");
        return chosen == "of-series" ? series_.line : chosen;
    }
    bool IsExplorer() const { return Layout().rfind("explorer", 0) == 0; }

    void Acknowledge() {
        if (acknowledges_) Say("OK!");
    }

    void Print() { stableOnly_ ? PrintAtRest() : SayReading(); }

    void PrintEvery(Time period) {
        StopRepeating();
        Every(period, [this] { SayReading(); });
    }
    void PrintContinuously() { PrintEvery(kContinuousPrintInterval); }

    // > "5A" or "5P"   prints every 5 s; > "0A", "0P"   < "OK!"  no more
    void SetInterval(const std::string& text) {
        const auto seconds = ParseWholeNumber(text, 0, kLongestInterval);
        const bool isWithout = seconds && *seconds > 0 && !MayPrintEvery();
        if (!seconds || isWithout) return Unknown(text);
        if (*seconds > 0) return PrintEvery(std::chrono::seconds(*seconds));
        StopRepeating();
        Acknowledge();
    }
    bool MayPrintEvery() const { return !series_.hasPrintCommands || series_.hasAutoPrintCommands; }

    /// Prints what is put on the pan, once it is at rest.
    void PrintEachLoad() {
        StopRepeating();
        AtEachRest([this] {
            if (Balance().Read().value != 0) SayReading();
        });
    }
    void PrintEachRest() {
        StopRepeating();
        AtEachRest([this] { SayReading(); });
    }

    // > "1S"   stable weights only; > "0S"   others, too
    void SetStability(const std::string& text) {
        if (text != "0" && text != "1") return Unknown(text);
        stableOnly_ = text == "1";
        Acknowledge();
    }

    // > "0RL"   no "OK!" from now on; > "1RL"   < "OK!"
    void SetAcknowledging(const std::string& text) {
        if (text != "0" && text != "1") return Unknown(text);
        acknowledges_ = text == "1";
        Acknowledge();
    }

    // > "WI 1 0"   < "WI A"   the doors, which weigh nothing
    void MoveDoors(const std::string& doors) {
        const auto isDoor = [&](std::size_t at) { return doors[at] == '0' || doors[at] == '1'; };
        if (doors.size() != 3 || !isDoor(0) || doors[1] != ' ' || !isDoor(2)) return Unknown("WI");
        Say("WI A");
    }

    void PrintAtRest() {
        const auto patience = switches_.TimeOf("stability-time-out");
        WhenStable(
            patience, [this] { SayReading(); },
            [this] {
                if (series_.refuses || IsExplorer()) Say("ES");
            });
    }

    void SayReading() {
        const Indication indication = Balance().Read();
        if (!Balance().IsOn()) return;
        if (indication.range != Indication::Range::Inside) return SayOutOfRange(indication.range);
        Say(Line(indication.Digits(), indication.unit, indication.stable && !IsBusy()));
    }

    void SayOutOfRange(Indication::Range range) {
        if (!series_.printsOverload) return;
        Say(range == Indication::Range::Over ? "OVER LOAD" : "UNDER LOAD");
    }

    std::string Line(const std::string& digits, const std::string& unit, bool isStable) const {
        const std::string shownUnit = switches_.IsOn("numeric-only") ? "" : unit;
        return OhausLine(Layout(), digits, shownUnit, isStable, Balance().TareWeight() != 0);
    }

    // > "T"   older: zero near zero, else tare, and no answer
    void Tare() {
        if (series_.hasPrintCommands)
            return Work([this] {
                const bool isEmpty = Balance().Read().value <= 0 && Balance().TareWeight() == 0;
                return isEmpty ? Outcome::TooLow : Balance().Tare();
            });
        const auto patience = switches_.TimeOf("stability-time-out");
        WhenStable(
            patience,
            [this] {
                if (Balance().Zero() != Outcome::Done) Balance().Tare();
            },
            [] {});
    }

    // > "Z"   < "OK!", and the work is done when the pan is at rest; "ES" when that is in vain
    void Zero() {
        Work([this] { return Balance().Zero(); });
    }

    void Work(const std::function<Outcome()>& outcome) {
        const bool isMoving = IsBusy() || !Balance().Read().stable;
        if (isMoving) {
            Acknowledge();
            return WhenStable(
                kWorkTime, [outcome] { outcome(); }, [] {});
        }
        if (outcome() == Outcome::Done)
            Acknowledge();
        else if (series_.acknowledges)
            Say("ES");
    }

    // > "12.5T"   < "OK!"  in the unit that is shown, on the Discovery in g; "0T" clears it
    void PresetTare(const std::string& text) {
        const auto value = ParseNumber(text);
        const double grams = series_.presetsTareInGrams ? 1 : Balance().Data().gramsPerUnit;
        if (!value || Balance().PresetTare(*value * grams) != Outcome::Done) return Unknown(text);
        Acknowledge();
    }

    void SaySoftware() { Say(switches_.Text("software")); }
    void SaySerialNumber() { Say(switches_.Text("serial-number")); }
    void SayMode() { Say(Balance().Data().countsPieces ? "Counting" : "Weighing"); }
    void SayUnit() { Say(Balance().Data().unit); }
    void SayTare() { Say(Line(Balance().TareDigits(), Balance().Data().unit, true)); }

    // > "?"   < "g      "  unit in five columns, blank, "?" while the pan moves
    void SayStability() {
        const bool isStable = Balance().Read().stable && !IsBusy();
        Say(LeftAligned(Balance().Data().unit, 5) + " " + (isStable ? " " : "?"));
    }
    void SayLastError() { Say("[Err 0]"); }

    // > "1M"   < "OK!"
    void ChooseMode(const std::string& text) {
        const auto mode = ParseWholeNumber(text, 0, 99);
        const bool isWeighing = mode == series_.weighingMode;
        const bool isCounting = mode == series_.countingMode;
        if (!mode || !(isWeighing || isCounting)) return Unknown(text);
        isCounting ? CountPieces() : Weigh();
        Acknowledge();
    }
    void NextMode() {
        const bool canCount = series_.countingMode >= 0 && !Balance().Data().countsPieces;
        canCount ? CountPieces() : Weigh();
        Acknowledge();
    }
    void Weigh() {
        if (Balance().Data().countsPieces) Balance().ShowUnit("g", 1);
    }
    void CountPieces() { Balance().ShowUnit("PCS", 1, true); }

    // > "2U"   < "OK!", and weights come in kg; on the Scout Pro "1M" for oz, and no answer
    void ChooseUnit(const std::string& text) {
        const auto number = ParseWholeNumber(text, 0, 99);
        if (!number || !ShowUnit(*number)) return Unknown(text);
        Acknowledge();
    }

    void NextUnit() {
        const auto& units = series_.units;
        const auto shown = std::find_if(units.begin(), units.end(), [this](const OhausUnit& each) {
            return each.text == Balance().Data().unit;
        });
        const bool isLast = shown == units.end() || shown + 1 == units.end();
        ShowUnit(isLast ? units.front().number : (shown + 1)->number);
        Acknowledge();
    }

    bool ShowUnit(int number) {
        const auto& units = series_.units;
        const auto unit = std::find_if(units.begin(), units.end(), [number](const OhausUnit& each) {
            return each.number == number;
        });
        if (unit == units.end()) return false;
        Balance().ShowUnit(unit->text, unit->grams, unit->countsPieces);
        return true;
    }

    // > "0FMT"   < "OK!"  the format that it has anyway
    void ChooseFormat(const std::string& text) {
        if (text != "0") return Unknown(text);
        Acknowledge();
    }

    bool IsAsleep() const { return !awake_ || !Balance().IsOn(); }

    // > "ON"   < "OK!", and "ES" to everything until it is awake
    void WakeUp() {
        Acknowledge();
        if (Balance().IsOn()) return;
        Balance().SwitchOn();
        awake_ = false;
        After(switches_.TimeOf("wake-up-time"), [this] { awake_ = true; });
    }

    void FallAsleep() {
        Acknowledge();
        CancelAll();
        Balance().SwitchOff();
    }

    void RestoreFactorySettings() {
        CancelAll();
        stableOnly_ = false;
        lost_ = switches_.IsOn("reset-changes-line");
        if (switches_.IsOn("factory-auto-print")) PrintEvery(kContinuousPrintInterval);
    }

    Switches switches_;
    const OhausSeries& series_;
    bool stableOnly_ = false;
    bool acknowledges_ = series_.acknowledges;
    bool awake_ = true;
    bool lost_ = false;  // at line settings at which no command is understood
};

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceOHAUS_SPU602>() {
    CatalogEntry entry;
    entry.maker = "Ohaus";
    entry.model = "Scout Pro or Explorer, 610 g";
    entry.line = {2400, 7, Parity::None, 1, FlowControl::None};
    entry.switches = OhausSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new OhausPrint(model, switches));
    };
    return entry;
}

}  // namespace simulator
