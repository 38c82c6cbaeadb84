// Sartorius balance with the maker's own interface protocol: a command is ESC and a letter, and
// with a parameter it ends in "_"; CR LF may follow. Only the print command and the questions x1_
// to x3_ are answered; what a series does not know is ignored.
//
//   > ESC "P"        < "+   123.56 g  "          16 characters with the line end
//                    < "N     +   123.56 g  "    22: with an identifier in front
//                    < "+   123.56    "          the pan still moves: no unit
//                    < "      H       "          overload, "L" underload
//   > ESC "x1_"      < "MSE1203S-100-DR     "  model; "x2_" serial number, "x3_" software
//   > ESC "T"        tare and zero; ESC "f3_" or ESC "V" zero, ESC "f4_" or ESC "U" tare
//   > ESC "K" to "N" filter for a very stable to a very unstable place
//   > ESC "O", "R"   keys blocked, free again
//   > ESC "x0_", "Z", "W"   adjustment, with "C" for a weight meanwhile
//   > ESC "S"        restart
//   > ESC "s3_"      cancel
//   > ESC "t5.00_"   type a text, ESC "kF4_" press soft key 4: the text becomes the tare T1

#include "simulator/instruments/sartorius.h"

#include <cctype>
#include <map>

#include "simulator/Text.h"
#include "simulator/instruments/SbiSeries.h"

namespace simulator {
namespace {

constexpr char escape = '\x1b';

/// As delivered, the balance waits for stability for as long as it takes.
constexpr Time forAsLongAsItTakes = 24h;

constexpr Time autoPrintInterval = 100ms;

constexpr std::size_t identifierColumns = 6;
constexpr std::size_t valueColumns = 9;
constexpr std::size_t unitColumns = 3;
constexpr std::size_t lineColumns = 14;
constexpr std::size_t longestWord = lineColumns + identifierColumns;

class Sbi : public Dialect {
 public:
    Sbi(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches), series_(sbiSeries(switches)) {
        for (const Command& command : commands())
            if (command.isKnown) on(command.name, this, command.does);
        printUnasked();
    }

    void powerUp() override {
        typed_.clear();
        storedTare_.clear();
        adjusting_ = false;
        freeKeys();
        balance().filter(1);
        printUnasked();
    }

 protected:
    void unknown(const std::string&) override {}
    bool interrupts(const std::string& command) const override {
        return command == "s3" || command[0] == 'x';
    }

    std::optional<std::string> cutCommand(std::string& received) override {
        received.erase(0, beginOfCommand(received));
        const std::size_t first = !received.empty() && received[0] == escape ? 1 : 0;
        if (received.size() <= first) return std::nullopt;
        const bool isLetterAlone = std::isupper(static_cast<unsigned char>(received[first])) != 0;
        const std::size_t end = isLetterAlone ? first + 1 : received.find('_');
        if (end == std::string::npos) return std::nullopt;
        const std::string command = received.substr(first, end - first);
        received.erase(0, isLetterAlone ? end : end + 1);
        return command[0] == 't' ? "t " + command.substr(1) : command;
    }

 private:
    struct Command {
        const char* name;
        Does<Sbi> does;
        bool isKnown;
    };

    std::vector<Command> commands() const {
        const bool isApart = series_.hasTareAlone;
        const bool hasKeys = series_.hasFunctionKeys;
        return {
            {"P", &Sbi::printOrSwitch, true},
            {"T", &Sbi::tareAndZero, true},
            {"U", &Sbi::tareAlone, isApart},
            {"V", &Sbi::zeroAlone, isApart},
            {"f3", &Sbi::zeroAlone, hasKeys},
            {"f4", &Sbi::tareAlone, hasKeys},
            {"s3", &Sbi::cancel, true},
            {"t", &Sbi::type, series_.hasSoftKeys},
            {"kF4", &Sbi::pressSoftKey4, series_.hasSoftKeys},
            {"x1", &Sbi::sayModel, true},
            {"x2", &Sbi::saySerialNumber, true},
            {"x3", &Sbi::saySoftware, series_.saysSoftware},
            {"x0", &Sbi::adjust, hasKeys},
            {"Z", &Sbi::adjust, true},
            {"W", &Sbi::adjust, true},
            {"K", &Sbi::filterVeryStable, true},
            {"L", &Sbi::filterStable, true},
            {"M", &Sbi::filterUnstable, true},
            {"N", &Sbi::filterVeryUnstable, true},
            {"O", &Sbi::blockKeys, true},
            {"R", &Sbi::freeKeys, true},
            {"S", &Sbi::restart, series_.canRestart},
            {"p", &Sbi::print, series_.printsToAll == "p"},
            {"kP", &Sbi::print, series_.printsToAll == "kP"},
        };
    }

    /// Where ESC stands, or the first letter where ESC may be left out.
    std::size_t beginOfCommand(const std::string& received) const {
        std::size_t at = 0;
        const auto begins = [this](char each) {
            const bool isLetter = std::isalpha(static_cast<unsigned char>(each)) != 0;
            return each == escape || (series_.takesBareCommands && isLetter);
        };
        while (at < received.size() && !begins(received[at]))
            ++at;
        return at;
    }

    // > ESC "x1_"   < "MSE1203S-100-DR     ", 14 characters in lines of 16
    void sayModel() { sayWord(series_.word + series_.model); }
    void saySerialNumber() { sayWord(switches_.text("serial-number")); }
    void saySoftware() { sayWord(switches_.text("software")); }

    void sayWord(const std::string& word) {
        const std::size_t columns = hasIdentifiers() ? longestWord : lineColumns;
        say(leftAligned(word, columns).substr(0, columns));
    }

    void filterVeryStable() { balance().filter(4); }
    void filterStable() { balance().filter(1); }
    void filterUnstable() { balance().filter(0.5); }
    void filterVeryUnstable() { balance().filter(0.25); }

    void atRest(Action then) {
        whenStable(forAsLongAsItTakes, std::move(then), [] {});
    }

    void printUnasked() {
        stopRepeating();
        printsUnasked_ = switches_.isOn("auto-print");
        if (printsUnasked_) every(autoPrintInterval, [this] { sayReading(); });
    }

    /// ESC P: in some series it ends what is printed unasked, or stops and starts it.
    void printOrSwitch() {
        const bool isAutomatic = switches_.isOn("auto-print");
        if (!isAutomatic || series_.print == SbiSeries::Print::goesBetween) return print();
        if (!printsUnasked_ && series_.print == SbiSeries::Print::stopsAndStarts)
            return printUnasked();
        stopRepeating();
        printsUnasked_ = false;
        if (series_.print == SbiSeries::Print::ends) print();
    }

    void printKey() override {
        const bool isStopped = switches_.isOn("auto-print") && !printsUnasked_;
        isStopped ? printUnasked() : printOrSwitch();
    }

    void print() {
        const std::string when = series_.waitsForRest ? switches_.text("print") : "at-once";
        const bool isStable = !isBusy() && balance().read().stable;
        if (when == "stable")
            atRest([this] { sayPrint(); });
        else if (when == "at-once" || isStable)
            sayPrint();
    }

    void sayPrint() {
        sayReading();
        if (series_.endsWithBlankLine) say("");
    }

    void sayReading() {
        const std::string special = specialText();
        if (!special.empty()) return sayLine("Stat", special);
        const Reading reading = balance().read();
        if (!storedTare_.empty() && switches_.text("tare-line") != "off" && hasIdentifiers())
            sayLine(switches_.text("tare-line"), weight("+", storedTare_, reading.stable));
        std::string digits = reading.digits();
        const std::string sign = signOf(reading);
        if (sign == "-") digits.erase(0, 1);
        if (switches_.isOn("verified"))
            digits = digits.substr(0, digits.size() - 1) + "[" + digits.back() + "]";
        sayLine(identifier(), weight(sign, digits, reading.stable));
    }

    std::string signOf(const Reading& reading) const {
        if (reading.value == 0 && !series_.signsZero) return " ";
        return reading.value < 0 ? "-" : "+";
    }

    std::string identifier() const {
        if (balance().data().countsPieces) return "Qnt";
        if (!storedTare_.empty()) return "N1";
        return balance().tareWeight() == 0 ? series_.grossWord : "N";
    }

    /// What the display shows in place of a weight, from its third column on; empty for a weight.
    std::string specialText() const {
        const bool words = switches_.isOn("words");
        if (adjusting_) return words ? "      Cal." : "      C";
        switch (balance().read().range) {
            case Reading::Range::over:
                return words ? "      High" : "      H";
            case Reading::Range::under:
                return words ? "      Low" : "      L";
            default:
                break;
        }
        static const std::map<std::string, std::string> texts = {
            {"weight", ""},
            {"blank", " "},
            {"calibration", "      C"},
            {"final", "      --"},
            {"error", "   Err  54"},
            {"standby", "     OFF"},
            {"error-054", "   Err 054"},
            {"external-calibration", "   Cal. Ext."}};
        return texts.at(switches_.text("display"));
    }

    std::string weight(const std::string& sign, const std::string& digits, bool isStable) const {
        const BalanceData& data = balance().data();
        const std::string unit = !isStable ? "" : data.countsPieces ? "pcs" : data.unit;
        return sign + rightAligned(digits, valueColumns) + " " + leftAligned(unit, unitColumns);
    }

    bool hasIdentifiers() const { return switches_.text("line") == "22"; }

    void sayLine(const std::string& identifier, const std::string& text) {
        say((hasIdentifiers() ? leftAligned(identifier, identifierColumns) : "") +
            leftAligned(text, lineColumns));
    }

    void tareAndZero() {
        atRest([this] {
            storedTare_.clear();
            if (balance().zero() != Outcome::done) balance().tare();
            startAgain();
        });
    }

    void tareAlone() {
        atRest([this] {
            storedTare_.clear();
            balance().tare();
        });
    }

    void zeroAlone() {
        atRest([this] {
            storedTare_.clear();
            balance().zero();
            if (series_.print == SbiSeries::Print::ends && printsUnasked_) sayLine("Stat", "");
            startAgain();
        });
    }

    /// What ESC P has ended goes on after taring and zeroing.
    void startAgain() {
        if (series_.print == SbiSeries::Print::ends) printUnasked();
    }

    void adjust() {
        if (adjusting_) return;
        adjusting_ = true;
        after(switches_.time("adjustment-time"), [this] { adjusting_ = false; });
    }

    void restart() {
        cancelAll();
        balance().restart();
        powerUp();
    }

    void cancel() {
        cancelAll();
        adjusting_ = false;
        typed_.clear();
        balance().showWeight();
        printUnasked();
    }

    void type(const std::string& text) {
        typed_ = text;
        balance().showText(text);
    }

    /// Adds the typed number to the tare, where that is what the key does in this application.
    void pressSoftKey4() {
        const auto value = parseNumber(typed_);
        typed_.clear();
        balance().showWeight();
        if (!switches_.isOn("store-key") || !value) return;
        const double before = balance().tareWeight();
        if (balance().presetTare(before + *value * balance().data().gramsPerUnit) != Outcome::done)
            return;
        Reading stored = balance().read();
        stored.value = *value;
        storedTare_ = stored.digits();
    }

    Switches switches_;
    const SbiSeries& series_;
    std::string typed_;
    std::string storedTare_;  // digits of T1, empty without one
    bool printsUnasked_ = false;
    bool adjusting_ = false;
};

}  // namespace

CatalogEntry sartorius() {
    CatalogEntry entry;
    entry.name = "sartorius";
    entry.maker = "Sartorius";
    entry.model = "balance with 16- or 22-character lines, 610 g";
    entry.driverClass = "WbalanceSartorius";
    entry.line = {1200, 7, Parity::odd, 1, FlowControl::none};
    entry.switches = sbiSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Sbi(model, switches));
    };
    return entry;
}

}  // namespace simulator
