// Sartorius balance with the maker's own interface protocol: a command is ESC and a letter, and
// with a parameter it ends in "_"; CR LF may follow. Commands but the print command are not
// answered.
//
//   > ESC "P"        < "+   123.56 g  "          16 characters with the line end
//                    < "N     +   123.56 g  "    22: with an identifier in front
//                    < "+   123.56    "          the pan still moves: no unit
//                    < "      H       "          overload, "L" underload
//   > ESC "T"        tare and zero; ESC "f3_" zero, ESC "f4_" tare
//   > ESC "s3_"      cancel
//   > ESC "t5.00_"   type a text, ESC "kF4_" press soft key 4: the text becomes the tare T1

#include "simulator/instruments/sartorius.h"

#include <cctype>
#include <map>

#include "simulator/Text.h"

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

class Sbi : public Dialect {
 public:
    Sbi(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        onPlain("P", [this] { print(); });
        onPlain("T", [this] { tareAndZero(); });
        onPlain("f3", [this] { atRest([this] { balance().zero(); }); });
        onPlain("f4", [this] { atRest([this] { tare(); }); });
        onPlain("s3", [this] { cancel(); });
        on("t", [this](const std::string& text) { type(text); });
        onPlain("kF4", [this] { pressSoftKey4(); });
        printUnasked();
    }

    void powerUp() override {
        typed_.clear();
        storedTare_.clear();
        printUnasked();
    }

 protected:
    void unknown(const std::string&) override {}
    void printKey() override { print(); }
    bool interrupts(const std::string& command) const override { return command == "s3"; }

    std::optional<std::string> cutCommand(std::string& received) override {
        received.erase(0, received.find(escape));
        if (received.size() < 2) return std::nullopt;
        const bool isLetterAlone = std::isupper(static_cast<unsigned char>(received[1])) != 0;
        const std::size_t end = isLetterAlone ? 2 : received.find('_');
        if (end == std::string::npos) return std::nullopt;
        const std::string command = received.substr(1, end - 1);
        received.erase(0, isLetterAlone ? end : end + 1);
        return command[0] == 't' ? "t " + command.substr(1) : command;
    }

 private:
    void atRest(Action then) {
        whenStable(forAsLongAsItTakes, std::move(then), [] {});
    }

    void printUnasked() {
        if (switches_.isOn("auto-print")) every(autoPrintInterval, [this] { sayReading(); });
    }

    void print() {
        const std::string& when = switches_.text("print");
        const bool isStable = !isBusy() && balance().read().stable;
        if (when == "stable")
            atRest([this] { sayReading(); });
        else if (when == "at-once" || isStable)
            sayReading();
    }

    void sayReading() {
        const std::string special = specialText();
        if (!special.empty()) return sayLine("Stat", special);
        const Reading reading = balance().read();
        if (!storedTare_.empty() && switches_.text("tare-line") != "off" && hasIdentifiers())
            sayLine(switches_.text("tare-line"), weight("+", storedTare_, reading.stable));
        std::string digits = reading.digits();
        const std::string sign = digits[0] == '-' ? "-" : "+";
        if (sign == "-") digits.erase(0, 1);
        if (switches_.isOn("verified"))
            digits = digits.substr(0, digits.size() - 1) + "[" + digits.back() + "]";
        sayLine(storedTare_.empty() ? "N" : "N1", weight(sign, digits, reading.stable));
    }

    /// What the display shows in place of a weight, from its third column on; empty for a weight.
    std::string specialText() const {
        const bool words = switches_.isOn("words");
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
        const std::string unit = isStable ? balance().data().unit : "";
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
        });
    }

    void tare() {
        storedTare_.clear();
        balance().tare();
    }

    void cancel() {
        cancelAll();
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
    std::string typed_;
    std::string storedTare_;  // digits of T1, empty without one
};

}  // namespace

CatalogEntry sartorius() {
    CatalogEntry entry;
    entry.name = "sartorius";
    entry.maker = "Sartorius";
    entry.model = "balance with 16- or 22-character lines, 610 g";
    entry.driverClass = "WbalanceSartorius";
    entry.line = {1200, 7, Parity::odd, 1, FlowControl::none};
    entry.switches = {
        {"print", "stable", {"stable", "stable-or-nothing", "at-once"}, "when ESC P is answered"},
        {"line", "16", {"16", "22"}, "characters of a line, with its end; 22 has an identifier"},
        {"tare-line",
         "off",
         {"off", "TP1", "T1"},
         "identifier of a line ahead with the stored tare"},
        onOff("store-key", true, "soft key 4 stores what was typed as the tare"),
        onOff("verified", false, "the last digit stands in brackets"),
        onOff("words", false, "prints High and Low in place of H and L"),
        {"display",
         "weight",
         {"weight", "blank", "calibration", "external-calibration", "final", "error", "error-054",
          "standby"},
         "what is shown and printed"},
        onOff("auto-print", false, "prints 10 lines a second unasked"),
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Sbi(model, switches));
    };
    return entry;
}

}  // namespace simulator
