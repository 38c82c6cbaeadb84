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
// What is printed out of range is not documented: here, nothing.

#include "simulator/instruments/ohaus.h"

#include <algorithm>

#include "simulator/Text.h"
#include "simulator/instruments/OhausSeries.h"

namespace simulator {
namespace {

constexpr Time continuousPrintInterval = 200ms;
constexpr int longestInterval = 3600;

/// How long the work of T and Z may take behind its acknowledgement.
constexpr Time workTime = 10s;

class OhausPrint : public Dialect {
 public:
    OhausPrint(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r"), switches_(switches), series_(ohausSeries(switches)) {
        setAnswerEnd("\r\n");
        for (const Command& command : commands())
            if (command.isKnown) on(command.name, this, command.does);
        stableOnly_ = switches_.isOn("stable-only");
    }

    void powerUp() override { awake_ = true; }

 protected:
    void unknown(const std::string&) override {
        if (series_.refuses) say("ES");
    }

    /// A line feed behind the carriage return is dropped.
    std::optional<std::string> cutCommand(std::string& received) override {
        if (!received.empty() && received.front() == '\n') received.erase(0, 1);
        return Dialect::cutCommand(received);
    }

    /// What SP waits for does not keep P, unless that waits, too.
    bool interrupts(const std::string& command) const override {
        return command == "P" && !stableOnly_;
    }

    void printKey() override { print(); }

    /// A number in front of a command is its parameter: "5A" is looked up as "#A".
    void execute(const std::string& command) override {
        if (lost_ || command.empty()) return;
        if (isAsleep() && command != "ON") return say("ES");
        const std::size_t end = command.find_first_not_of("0123456789.");
        if (end == 0 || end == std::string::npos) return Dialect::execute(command);
        if (command.find(' ') != std::string::npos) return unknown(command);
        Dialect::execute("#" + command.substr(end) + " " + command.substr(0, end));
    }

 private:
    struct Command {
        const char* name;
        Does<OhausPrint> does;
        bool isKnown;
    };

    std::vector<Command> commands() const {
        const bool isNew = series_.hasPrintCommands;
        const bool isOld = !isNew;
        const bool prints = series_.hasAutoPrintCommands;
        const bool hasStablePrint = isOld ? switches_.isOn("stable-print") : prints;
        const bool says = series_.saysSettings;
        const bool chooses = series_.choosesModeAndUnit;
        return {
            {"P", &OhausPrint::print, true},
            {"SP", &OhausPrint::printAtRest, hasStablePrint},
            {"IP", &OhausPrint::sayReading, isNew},
            {"T", &OhausPrint::tare, true},
            {"Z", &OhausPrint::zero, isNew},
            {"#T", &OhausPrint::presetTare, says},
            {"V", &OhausPrint::saySoftware, true},
            {"PV", &OhausPrint::saySoftware, isNew},
            {"PSN", &OhausPrint::saySerialNumber, isNew},
            {"PM", &OhausPrint::sayMode, says},
            {"PU", &OhausPrint::sayUnit, says},
            {"PT", &OhausPrint::sayTare, says},
            {"#M", &OhausPrint::chooseMode, chooses},
            {"M", &OhausPrint::nextMode, chooses},
            {"#U", &OhausPrint::chooseUnit, chooses},
            {"U", &OhausPrint::nextUnit, chooses},
            {"#P", &OhausPrint::setInterval, isNew},
            {"CP", &OhausPrint::printContinuously, prints},
            {"SLP", &OhausPrint::printEachLoad, prints},
            {"SLZP", &OhausPrint::printEachRest, prints},
            {"#FMT", &OhausPrint::chooseFormat, series_.hasFormats},
            {"ON", &OhausPrint::wakeUp, isNew},
            {"OFF", &OhausPrint::fallAsleep, isNew},
            {"#M", &OhausPrint::chooseUnit, isOld},
            {"CA", &OhausPrint::printContinuously, isOld},
            {"SA", &OhausPrint::printEachRest, isOld},
            {"#A", &OhausPrint::setInterval, isOld},
            {"#S", &OhausPrint::setStability, isOld},
            {"?", &OhausPrint::sayStability, isOld},
            {"LE", &OhausPrint::sayLastError, isOld},
            {"\x1bR", &OhausPrint::restoreFactorySettings, isOld},
        };
    }

    const std::string& layout() const {
        const std::string& chosen = switches_.text("line");
        return chosen == "of-series" ? series_.line : chosen;
    }
    bool isExplorer() const { return layout().rfind("explorer", 0) == 0; }

    void acknowledge() {
        if (series_.acknowledges) say("OK!");
    }

    void print() { stableOnly_ ? printAtRest() : sayReading(); }

    void printEvery(Time period) {
        stopRepeating();
        every(period, [this] { sayReading(); });
    }
    void printContinuously() { printEvery(continuousPrintInterval); }

    // > "5A" or "5P"   prints every 5 s; > "0A", "0P"   < "OK!"  no more
    void setInterval(const std::string& text) {
        const auto seconds = parseWholeNumber(text, 0, longestInterval);
        const bool isWithout = seconds && *seconds > 0 && !mayPrintEvery();
        if (!seconds || isWithout) return unknown(text);
        if (*seconds > 0) return printEvery(std::chrono::seconds(*seconds));
        stopRepeating();
        acknowledge();
    }
    bool mayPrintEvery() const { return !series_.hasPrintCommands || series_.hasAutoPrintCommands; }

    /// Prints what is put on the pan, once it is at rest.
    void printEachLoad() {
        stopRepeating();
        atEachRest([this] {
            if (balance().read().value != 0) sayReading();
        });
    }
    void printEachRest() {
        stopRepeating();
        atEachRest([this] { sayReading(); });
    }

    // > "1S"   stable weights only; > "0S"   others, too
    void setStability(const std::string& text) {
        if (text == "0" || text == "1")
            stableOnly_ = text == "1";
        else
            unknown(text);
    }

    void printAtRest() {
        const auto patience = switches_.time("stability-time-out");
        whenStable(
            patience, [this] { sayReading(); },
            [this] {
                if (series_.refuses || isExplorer()) say("ES");
            });
    }

    void sayReading() {
        const Reading reading = balance().read();
        if (reading.range != Reading::Range::inside || !balance().isOn()) return;
        say(line(reading.digits(), reading.unit, reading.stable && !isBusy()));
    }

    std::string line(const std::string& digits, const std::string& unit, bool isStable) const {
        const std::string shownUnit = switches_.isOn("numeric-only") ? "" : unit;
        return ohausLine(layout(), digits, shownUnit, isStable, balance().tareWeight() != 0);
    }

    // > "T"   older: zero near zero, else tare, and no answer
    void tare() {
        if (series_.hasPrintCommands)
            return work([this] {
                const bool isEmpty = balance().read().value <= 0 && balance().tareWeight() == 0;
                return isEmpty ? Outcome::tooLow : balance().tare();
            });
        const auto patience = switches_.time("stability-time-out");
        whenStable(
            patience,
            [this] {
                if (balance().zero() != Outcome::done) balance().tare();
            },
            [] {});
    }

    // > "Z"   < "OK!", and the work is done when the pan is at rest; "ES" when that is in vain
    void zero() {
        work([this] { return balance().zero(); });
    }

    void work(const std::function<Outcome()>& outcome) {
        const bool isMoving = isBusy() || !balance().read().stable;
        if (isMoving) {
            acknowledge();
            return whenStable(
                workTime, [outcome] { outcome(); }, [] {});
        }
        if (outcome() == Outcome::done)
            acknowledge();
        else if (series_.acknowledges)
            say("ES");
    }

    // > "12.5T"   < "OK!"  in the unit that is shown, on the Discovery in g; "0T" clears it
    void presetTare(const std::string& text) {
        const auto value = parseNumber(text);
        const double grams = series_.choosesModeAndUnit ? balance().data().gramsPerUnit : 1;
        if (!value || balance().presetTare(*value * grams) != Outcome::done) return unknown(text);
        acknowledge();
    }

    void saySoftware() { say(switches_.text("software")); }
    void saySerialNumber() { say(switches_.text("serial-number")); }
    void sayMode() { say(balance().data().countsPieces ? "Counting" : "Weighing"); }
    void sayUnit() { say(balance().data().unit); }
    void sayTare() { say(line(balance().tareDigits(), balance().data().unit, true)); }

    // > "?"   < "g      "  unit in five columns, blank, "?" while the pan moves
    void sayStability() {
        const bool isStable = balance().read().stable && !isBusy();
        say(leftAligned(balance().data().unit, 5) + " " + (isStable ? " " : "?"));
    }
    void sayLastError() { say("[Err 0]"); }

    // > "1M"   < "OK!"
    void chooseMode(const std::string& text) {
        const auto mode = parseWholeNumber(text, 0, 99);
        const bool isWeighing = mode == series_.weighingMode;
        const bool isCounting = mode == series_.countingMode;
        if (!mode || !(isWeighing || isCounting)) return unknown(text);
        isCounting ? countPieces() : weigh();
        acknowledge();
    }
    void nextMode() {
        const bool canCount = series_.countingMode >= 0 && !balance().data().countsPieces;
        canCount ? countPieces() : weigh();
        acknowledge();
    }
    void weigh() {
        if (balance().data().countsPieces) balance().showUnit("g", 1);
    }
    void countPieces() { balance().showUnit("PCS", 1, true); }

    // > "2U"   < "OK!", and weights come in kg; on the Scout Pro "1M" for oz, and no answer
    void chooseUnit(const std::string& text) {
        const auto number = parseWholeNumber(text, 0, 99);
        if (!number || !showUnit(*number)) return unknown(text);
        acknowledge();
    }

    void nextUnit() {
        const auto& units = series_.units;
        const auto shown = std::find_if(units.begin(), units.end(), [this](const OhausUnit& each) {
            return each.text == balance().data().unit;
        });
        const bool isLast = shown == units.end() || shown + 1 == units.end();
        showUnit(isLast ? units.front().number : (shown + 1)->number);
        acknowledge();
    }

    bool showUnit(int number) {
        const auto& units = series_.units;
        const auto unit = std::find_if(units.begin(), units.end(), [number](const OhausUnit& each) {
            return each.number == number;
        });
        if (unit == units.end()) return false;
        balance().showUnit(unit->text, unit->grams, unit->countsPieces);
        return true;
    }

    // > "0FMT"   < "OK!"  the format that it has anyway
    void chooseFormat(const std::string& text) {
        if (text != "0") return unknown(text);
        acknowledge();
    }

    bool isAsleep() const { return !awake_ || !balance().isOn(); }

    // > "ON"   < "OK!", and "ES" to everything until it is awake
    void wakeUp() {
        acknowledge();
        if (balance().isOn()) return;
        balance().switchOn();
        awake_ = false;
        after(switches_.time("wake-up-time"), [this] { awake_ = true; });
    }

    void fallAsleep() {
        acknowledge();
        cancelAll();
        balance().switchOff();
    }

    void restoreFactorySettings() {
        cancelAll();
        stableOnly_ = false;
        lost_ = switches_.isOn("reset-changes-line");
        if (switches_.isOn("factory-auto-print")) printEvery(continuousPrintInterval);
    }

    Switches switches_;
    const OhausSeries& series_;
    bool stableOnly_ = false;
    bool awake_ = true;
    bool lost_ = false;  // at line settings at which no command is understood
};

}  // namespace

CatalogEntry ohaus() {
    CatalogEntry entry;
    entry.name = "ohaus";
    entry.maker = "Ohaus";
    entry.model = "Scout Pro or Explorer, 610 g";
    entry.driverClass = "WbalanceOHAUS_SPU602";
    entry.line = {2400, 7, Parity::none, 1, FlowControl::none};
    entry.switches = ohausSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new OhausPrint(model, switches));
    };
    return entry;
}

}  // namespace simulator
