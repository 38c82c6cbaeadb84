// Mettler PM balance with the standard PM protocol; one that is set to MT-SICS speaks as
// MtSics.h says.
//
//   > "S"       < "S       12.34 g"    waits for the pan to rest; "SI" when it never does
//   > "SI"      < "S       12.34 g", "SD      12.30 g", "SI", "SI+", "SI-"
//   > "SIR"     the same again and again, until S, SI or SIR
//   > "T"       tare at rest; no answer, or "EL"
//   > "B 5.00"  preset tare, "B 0" none; no answer, or "EL"
//   > "SR"      < "S       12.34 g"    and again whenever the pan has come to rest; "SNR" alike
//   > "CA"      < "CA BEGIN", later "CA END" or "CA ERROR"; "CA 0" ends it without an answer
//   > "IDX"     < "1126493": 7 characters, as the AT106 of the same family
//   > "RG ?"    < "F": the fine range, which "RG F" sets
//   > "@"       < "ES", as every unknown command

#include "simulator/Catalog.h"
#include "simulator/Text.h"
#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

/// Identifier in two columns, blank, value in ten, blank, unit: "SD      12.34 g".
constexpr std::size_t kIdentifierColumns = 2;
constexpr std::size_t kValueColumns = 10;
constexpr std::size_t kIdColumns = 7;

class StandardPm : public Dialect {
 public:
    StandardPm(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        OnPlain("S", [this] { SendStable(); });
        OnPlain("SI", [this] { SendImmediately(); });
        OnPlain("SIR", [this] { SendRepeatedly(); });
        OnPlain("T", [this] { TareAtRest(); });
        OnPlain("TI", [this] { Tare(); });
        On("B", [this](const std::string& value) { PresetTare(value); });
        On("D", [this](const std::string& text) { Balance().ShowText(text); });
        OnPlain("SR", [this] { SendChanges(); });
        OnPlain("SNR", [this] { SendChanges(); });
        OnPlain("IDX", [this] { Say(switches_.Text("serial-number").substr(0, kIdColumns)); });
        On("RG", [this](const std::string& range) { ChooseRange(range); });
        On("CA", [this](const std::string& parameters) { Adjust(parameters); });
        // Known: settings without an answer, and commands whose answers are not documented.
        for (const char* command :
             {"U", "M", "MI", "ML", "MS", "MZ", "MA", "AD", "ID", "DY", "DX", "W"})
            On(command, [](const std::string&) {});
    }

    void PowerUp() override { adjusting_ = false; }

 protected:
    void Unknown(const std::string& command) override {
        if (!command.empty()) Say("ES");
    }
    void Refuse(const std::string& /*command*/) override { Say("EL"); }
    void Spoiled() override { Say("ET"); }

    /// S that waits does not keep SI.
    bool Interrupts(const std::string& command) const override {
        return command == "SI" && stableIsAwaited_;
    }

    void PrintKey() override {
        WhenStable(
            switches_.TimeOf("stability-time-out"), [this] { SayWeightNow(); }, [] {});
    }

    /// An empty line repeats the last command on some balances of the family.
    void Execute(const std::string& command) override {
        if (!command.empty()) last_ = command;
        Dialect::Execute(switches_.IsOn("empty-line-repeats") ? last_ : command);
    }

 private:
    bool IsOutOfRange() {
        const auto range = Balance().Read().range;
        if (range == Indication::Range::Inside) return false;
        Say(range == Indication::Range::Over ? "SI+" : "SI-");
        return true;
    }

    void SayWeight() {
        const Indication indication = Balance().Read();
        Say(LeftAligned(indication.stable ? "S" : "SD", kIdentifierColumns) + " " +
            RightAligned(indication.Digits(), kValueColumns) + " " + indication.unit);
    }

    void SendStable() {
        StopRepeating();
        if (adjusting_) return Say("SI");
        if (IsOutOfRange()) return;
        stableIsAwaited_ = true;
        WhenStable(
            switches_.TimeOf("stability-time-out"),
            [this] {
                stableIsAwaited_ = false;
                if (!IsOutOfRange()) SayWeight();
            },
            [this] {
                stableIsAwaited_ = false;
                Say("SI");
            });
    }

    void SendImmediately() {
        StopRepeating();
        SayWeightNow();
    }

    void SendChanges() {
        StopRepeating();
        AtEachRest([this] { SayWeightNow(); });
    }

    void Adjust(const std::string& parameters) {
        if (parameters == "0") {
            CancelAll();
            adjusting_ = false;
            return;
        }
        if (!parameters.empty() || adjusting_) return Say("EL");
        Say("CA BEGIN");
        adjusting_ = true;
        After(switches_.TimeOf("adjustment-time"), [this] {
            adjusting_ = false;
            Say(!IsBusy() && Balance().Read().stable ? "CA END" : "CA ERROR");
        });
    }

    /// The range in force is said, not its effect: the balance is in its fine range all the time.
    void ChooseRange(const std::string& range) {
        if (range == "?") return Say("F");
        if (range != "F") Say("EL");
    }

    void SayWeightNow() {
        if (IsBusy() || adjusting_)
            Say("SI");
        else if (!IsOutOfRange())
            SayWeight();
    }

    void SendRepeatedly() {
        StopRepeating();
        Every(switches_.TimeOf("repeat-interval"), [this] { SayWeightNow(); });
    }

    void TareAtRest() {
        WhenStable(
            switches_.TimeOf("stability-time-out"), [this] { Tare(); }, [this] { Say("EL"); });
    }

    void Tare() {
        if (Balance().Tare() != Outcome::Done) Say("EL");
    }

    void PresetTare(const std::string& text) {
        const auto value = ParseNumber(text);
        if (!value || Balance().PresetTare(*value * Balance().Data().gramsPerUnit) != Outcome::Done)
            Say("EL");
    }

    Switches switches_;
    bool stableIsAwaited_ = false;
    std::string last_;
    bool adjusting_ = false;
};

bool SpeaksMtSics(const Switches& switches) {
    return switches.Text("protocol") == "mt-sics";
}

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceMettlerPM>() {
    CatalogEntry entry;
    entry.maker = "Mettler";
    entry.model = "PM, 610 g";
    entry.line = {600, 7, Parity::Even, 1, FlowControl::None};
    entry.switches = MtSicsSwitches("level-1");
    entry.switches.insert(
        entry.switches.begin(),
        {{"protocol",
          "standard",
          {"standard", "mt-sics"},
          "language; some switches are of MT-SICS only"},
         OnOff("empty-line-repeats", false, "repeats the last command on an empty line")});
    entry.modelBalance = [](const Switches& switches) {
        return SpeaksMtSics(switches) ? MtSicsBalance(switches) : BalanceData();
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        if (SpeaksMtSics(switches)) return std::unique_ptr<Dialect>(new MtSics(model, switches));
        return std::unique_ptr<Dialect>(new StandardPm(model, switches));
    };
    return entry;
}

}  // namespace simulator
