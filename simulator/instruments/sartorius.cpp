// Sartorius balance with the maker's own interface protocol: a command is ESC and a letter, and
// with a parameter it ends in "_"; CR LF may follow. Only the print command and the questions x1_
// to x3_, x8_ and i_ are answered; what a series does not know is ignored.
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

#include <cctype>
#include <map>

#include "simulator/Catalog.h"
#include "simulator/Text.h"
#include "simulator/instruments/SbiSeries.h"

namespace simulator {
namespace {

constexpr char kEscape = '\x1b';

/// As delivered, the balance waits for stability for as long as it takes.
constexpr Time kForAsLongAsItTakes = 24h;

constexpr Time kAutoPrintInterval = 100ms;

constexpr std::size_t kIdentifierColumns = 6;
constexpr std::size_t kValueColumns = 9;
constexpr std::size_t kUnitColumns = 3;
constexpr std::size_t kLineColumns = 14;
constexpr std::size_t kLongestWord = kLineColumns + kIdentifierColumns;

class Sbi : public Dialect {
 public:
    Sbi(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches), series_(ChosenSbiSeries(switches)) {
        for (const Command& command : Commands())
            if (command.isKnown) On(command.name, this, command.does);
        PrintUnasked();
    }

    void PowerUp() override {
        typed_.clear();
        lastKey_ = "000";
        storedTare_.clear();
        adjusting_ = false;
        FreeKeys();
        Balance().Filter(1);
        PrintUnasked();
    }

 protected:
    void Unknown(const std::string& /*command*/) override {}
    bool Interrupts(const std::string& command) const override {
        return command == "s3" || command[0] == 'x' || command[0] == 'i';
    }

    std::optional<std::string> CutCommand(std::string& received) override {
        received.erase(0, BeginOfCommand(received));
        const std::size_t first = !received.empty() && received[0] == kEscape ? 1 : 0;
        if (received.size() <= first) return std::nullopt;
        const bool isLetterAlone = std::isupper(static_cast<unsigned char>(received[first])) != 0;
        const std::size_t end = isLetterAlone ? first + 1 : received.find('_');
        if (end == std::string::npos) return std::nullopt;
        const std::string command = received.substr(first, end - first);
        received.erase(0, isLetterAlone ? end : end + 1);
        return WithTextApart(command);
    }

    /// The text of "t5.00" stands apart from the command, as parameters do.
    std::string WithTextApart(const std::string& command) const {
        const std::string& type = series_.typeText;
        if (type.empty() || command.rfind(type, 0) != 0) return command;
        return type + " " + command.substr(type.size());
    }

 private:
    struct Command {
        const char* name;
        Does<Sbi> does;
        bool isKnown;
    };

    std::vector<Command> Commands() const {
        const bool isApart = series_.hasTareAlone;
        const bool hasKeys = series_.hasFunctionKeys;
        return {
            {"P", &Sbi::PrintOrSwitch, true},
            {"T", &Sbi::TareAndZero, true},
            {"U", &Sbi::TareAlone, isApart},
            {"V", &Sbi::ZeroAlone, isApart},
            {"f3", &Sbi::ZeroAlone, hasKeys},
            {"f4", &Sbi::TareAlone, hasKeys},
            {"s3", &Sbi::Cancel, true},
            {"t", &Sbi::Type, series_.typeText == "t"},
            {"a3", &Sbi::ShowText, series_.typeText == "a3"},
            {"kF4", &Sbi::PressSoftKey4, series_.hasSoftKeys},
            {"x1", &Sbi::SayModel, true},
            {"x2", &Sbi::SaySerialNumber, true},
            {"x3", &Sbi::SaySoftware, series_.saysSoftware},
            {"x8", &Sbi::SayLastKey, series_.saysLastKey},
            {"i", &Sbi::SayPlatform, !series_.platform.empty()},
            {"kZE", &Sbi::ZeroAlone, series_.hasKeysByName},
            {"kT", &Sbi::TareAndZero, series_.hasKeysByName},
            {"x0", &Sbi::Adjust, hasKeys},
            {"f1", &Sbi::Adjust, series_.hasCalKey},
            {"Z", &Sbi::Adjust, true},
            {"W", &Sbi::Adjust, true},
            {"K", &Sbi::FilterVeryStable, true},
            {"L", &Sbi::FilterStable, true},
            {"M", &Sbi::FilterUnstable, true},
            {"N", &Sbi::FilterVeryUnstable, true},
            {"O", &Sbi::BlockKeys, true},
            {"R", &Sbi::FreeKeys, true},
            {"S", &Sbi::Restart, series_.canRestart},
            {"p", &Sbi::Print, series_.printsToAll == "p"},
            {"kP", &Sbi::Print, series_.printsToAll == "kP"},
        };
    }

    /// Where ESC stands, or the first letter where ESC may be left out.
    std::size_t BeginOfCommand(const std::string& received) const {
        std::size_t at = 0;
        const auto begins = [this](char each) {
            const bool isLetter = std::isalpha(static_cast<unsigned char>(each)) != 0;
            return each == kEscape || (series_.takesBareCommands && isLetter);
        };
        while (at < received.size() && !begins(received[at]))
            ++at;
        return at;
    }

    // > ESC "x1_"   < "MSE1203S-100-DR     ", 14 characters in lines of 16
    void SayModel() { SayWord(series_.word + series_.model); }
    void SaySerialNumber() { SayWord(switches_.Text("serial-number")); }
    void SaySoftware() { SayWord(switches_.Text("software")); }

    // > ESC "i_"   < "C2/016202/1"   type, software, platform
    void SayPlatform() { Say(series_.platform); }

    // > ESC "x8_"  < "        051   "   the tare key was pressed last; 000: none yet
    void SayLastKey() { Say("        " + lastKey_ + "   "); }
    void NoteKey(Key key) override {
        if (key == Key::Tare) lastKey_ = "051";
    }

    void SayWord(const std::string& word) {
        const std::size_t columns = HasIdentifiers() ? kLongestWord : kLineColumns;
        Say(LeftAligned(word, columns).substr(0, columns));
    }

    void FilterVeryStable() { Balance().Filter(4); }
    void FilterStable() { Balance().Filter(1); }
    void FilterUnstable() { Balance().Filter(0.5); }
    void FilterVeryUnstable() { Balance().Filter(0.25); }

    void AtRest(Action then) {
        WhenStable(kForAsLongAsItTakes, std::move(then), [] {});
    }

    void PrintUnasked() {
        StopRepeating();
        printsUnasked_ = switches_.IsOn("auto-print");
        if (printsUnasked_) Every(kAutoPrintInterval, [this] { SayReading(); });
    }

    /// ESC P: in some series it ends what is printed unasked, or stops and starts it.
    void PrintOrSwitch() {
        const bool isAutomatic = switches_.IsOn("auto-print");
        if (!isAutomatic || series_.print == SbiSeries::Print::GoesBetween) return Print();
        if (!printsUnasked_ && series_.print == SbiSeries::Print::StopsAndStarts)
            return PrintUnasked();
        StopRepeating();
        printsUnasked_ = false;
        if (series_.print == SbiSeries::Print::Ends) Print();
    }

    void PrintKey() override {
        const bool isStopped = switches_.IsOn("auto-print") && !printsUnasked_;
        isStopped ? PrintUnasked() : PrintOrSwitch();
    }

    void Print() {
        const std::string when = series_.waitsForRest ? switches_.Text("print") : "at-once";
        const bool isStable = !IsBusy() && Balance().Read().stable;
        if (when == "stable")
            AtRest([this] { SayPrint(); });
        else if (when == "at-once" || isStable)
            SayPrint();
    }

    void SayPrint() {
        SayReading();
        if (series_.endsWithBlankLine) Say("");
    }

    void SayReading() {
        const std::string special = SpecialText();
        if (!special.empty()) return SayLine("Stat", special);
        const Indication indication = Balance().Read();
        if (!storedTare_.empty() && switches_.Text("tare-line") != "off" && HasIdentifiers())
            SayLine(switches_.Text("tare-line"), Weight("+", storedTare_, indication.stable));
        std::string digits = indication.Digits();
        const std::string sign = SignOf(indication);
        if (sign == "-") digits.erase(0, 1);
        if (switches_.IsOn("verified"))
            digits = digits.substr(0, digits.size() - 1) + "[" + digits.back() + "]";
        SayLine(Identifier(), Weight(sign, digits, indication.stable));
    }

    std::string SignOf(const Indication& indication) const {
        if (indication.value == 0 && !series_.signsZero) return " ";
        return indication.value < 0 ? "-" : "+";
    }

    std::string Identifier() const {
        if (Balance().Data().countsPieces) return "Qnt";
        if (!storedTare_.empty()) return "N1";
        return Balance().TareWeight() == 0 ? series_.grossWord : "N";
    }

    /// What the display shows in place of a weight, from its third column on; empty for a weight.
    std::string SpecialText() const {
        const bool words = switches_.IsOn("words");
        if (adjusting_) return words ? "      Cal." : "      C";
        switch (Balance().Read().range) {
            case Indication::Range::Over:
                return words ? "      High" : "      H";
            case Indication::Range::Under:
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
        return texts.at(switches_.Text("display"));
    }

    std::string Weight(const std::string& sign, const std::string& digits, bool isStable) const {
        const BalanceData& data = Balance().Data();
        const std::string known = data.countsPieces ? "pcs" : data.unit;
        const std::string shown = switches_.IsOn("unverified") ? "!" : known;
        const std::string unit = isStable ? shown : "";
        return sign + RightAligned(digits, kValueColumns) + " " + LeftAligned(unit, kUnitColumns);
    }

    bool HasIdentifiers() const { return switches_.Text("line") == "22"; }

    void SayLine(const std::string& identifier, const std::string& text) {
        Say((HasIdentifiers() ? LeftAligned(identifier, kIdentifierColumns) : "") +
            LeftAligned(text, kLineColumns));
    }

    void TareAndZero() {
        AtRest([this] {
            storedTare_.clear();
            if (Balance().Zero() != Outcome::Done) Balance().Tare();
            StartAgain();
        });
    }

    void TareAlone() {
        AtRest([this] {
            storedTare_.clear();
            Balance().Tare();
        });
    }

    void ZeroAlone() {
        AtRest([this] {
            storedTare_.clear();
            Balance().Zero();
            if (series_.print == SbiSeries::Print::Ends && printsUnasked_) SayLine("Stat", "");
            StartAgain();
        });
    }

    /// What ESC P has ended goes on after taring and zeroing.
    void StartAgain() {
        if (series_.print == SbiSeries::Print::Ends) PrintUnasked();
    }

    void Adjust() {
        if (adjusting_) return;
        adjusting_ = true;
        After(switches_.TimeOf("adjustment-time"), [this] { adjusting_ = false; });
    }

    void Restart() {
        CancelAll();
        Balance().Restart();
        PowerUp();
    }

    void Cancel() {
        CancelAll();
        adjusting_ = false;
        typed_.clear();
        Balance().ShowWeight();
        PrintUnasked();
    }

    void Type(const std::string& text) {
        typed_ = text;
        ShowText(text);
    }
    void ShowText(const std::string& text) { Balance().ShowText(text); }

    /// Adds the typed number to the tare, where that is what the key does in this application.
    void PressSoftKey4() {
        const auto value = ParseNumber(typed_);
        typed_.clear();
        Balance().ShowWeight();
        if (!switches_.IsOn("store-key") || !value) return;
        const double before = Balance().TareWeight();
        if (Balance().PresetTare(before + *value * Balance().Data().gramsPerUnit) != Outcome::Done)
            return;
        Indication stored = Balance().Read();
        stored.value = *value;
        storedTare_ = stored.Digits();
    }

    Switches switches_;
    const SbiSeries& series_;
    std::string typed_;
    std::string lastKey_ = "000";
    std::string storedTare_;  // digits of T1, empty without one
    bool printsUnasked_ = false;
    bool adjusting_ = false;
};

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceSartorius>() {
    CatalogEntry entry;
    entry.maker = "Sartorius";
    entry.model = "balance with 16- or 22-character lines, 610 g";
    entry.line = {1200, 7, Parity::Odd, 1, FlowControl::None};
    entry.switches = SbiSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Sbi(model, switches));
    };
    return entry;
}

}  // namespace simulator
