// Gibertini, as the CRYSTAL and EU-C LCD manuals describe it. Commands are a letter and CR, LF is
// ignored; every command that is accepted is answered, in the CRYSTAL protocol with a record:
//   > "B"   < "    123.45 g   DS"   valid and stable; "DI" unstable, "OE" and "UE" out of range
//   > "T"   < "    123.45 g   TS"   taring
//   > "I"   < record after record, until "F"
// Two other protocols know no flags: EURO answers with the measure alone, PRINTER is silent and
// sends a line when someone presses the PRINT key, once the pan is at rest.

#include <algorithm>

#include "simulator/Catalog.h"

namespace simulator {
namespace {

constexpr Time kPatience = 60s;

class Gibertini : public Dialect {
 public:
    Gibertini(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r"), switches_(switches) {
        SetAnswerEnd("\r\n");
        if (IsProtocol("printer")) {
            PressPrintKey();
            return;
        }
        OnPlain("B", [this] { SayMeasure(); });
        OnPlain("T", [this] { Tare(); });
        OnPlain("C", [this] { SayMeasure('C'); });
        OnPlain("I", [this] { Repeat(); });
        OnPlain("F", [this] { Stop(); });
        if (switches_.IsOn("continuous")) Repeat();
    }

    void PowerUp() override {
        testedAt_ = Now() + switches_.TimeOf("initial-test");
        if (IsProtocol("printer"))
            PressPrintKey();
        else if (switches_.IsOn("continuous"))
            Repeat();
    }

 protected:
    std::optional<std::string> CutCommand(std::string& received) override {
        received.erase(std::remove(received.begin(), received.end(), '\n'), received.end());
        return Dialect::CutCommand(received);
    }
    void Unknown(const std::string& /*command*/) override {}
    /// Also where PRINT is said to belong to the printer protocol: the line of the protocol.
    void PrintKey() override {
        WhenStable(
            kPatience, [this] { IsProtocol("printer") ? Say(MeasureAndUnit()) : SayMeasure(); },
            [] {});
    }
    /// A tare that waits for the pan holds nothing back.
    bool Interrupts(const std::string& /*command*/) const override { return true; }

 private:
    bool IsProtocol(const std::string& name) const { return switches_.Text("protocol") == name; }

    void SayMeasure(char state = 'D') {
        Say(IsProtocol("euro") ? RightAligned(Balance().Read().Digits(), 9) : Record(state));
    }

    void Tare() {
        SayMeasure('T');
        const auto done = [this] {
            Balance().Tare();
            if (switches_.IsOn("tare-done")) SayMeasure();
        };
        WhenStable(kPatience, done, [] {});
    }

    void Repeat() {
        StopRepeating();
        Every(switches_.TimeOf("interval"), [this] { SayMeasure(); });
    }

    void Stop() {
        StopRepeating();
        SayMeasure();
    }

    void PressPrintKey() {
        After(switches_.TimeOf("print-key"), [this] {
            PrintKey();
            PressPrintKey();
        });
    }

    std::string MeasureAndUnit() const {
        const Indication indication = Balance().Read();
        return RightAligned(indication.Digits(), 10) + " " + LeftAligned(indication.unit, 3);
    }

    /// Measure, unit, two flags: "    123.45 g   DS".
    std::string Record(char state) const {
        const Indication indication = Balance().Read();
        std::string flags = {state, indication.stable ? 'S' : 'I'};
        if (state == 'D') flags[0] = switches_.Text("flag").front();
        if (Now() < testedAt_) flags[0] = 'I';
        if (indication.range == Indication::Range::Over) flags = "OE";
        if (indication.range == Indication::Range::Under) flags = "UE";
        return MeasureAndUnit() + " " + flags;
    }

    Switches switches_;
    Time testedAt_{0};
};

std::vector<SwitchDescription> GibertiniSwitches() {
    return {
        {"protocol",
         "crystal",
         {"crystal", "euro", "printer"},
         "records with flags, the measure alone, or lines of the PRINT key only"},
        {"flag",
         "D",
         {"D", "C", "Z", "I"},
         "of a record: valid, calibration, zero acquisition, initial test"},
        OnOff("tare-done", false, "sends a second record when the taring that T began is done"),
        OnOff("continuous", false, "sends records from power-on until F, as after I"),
        {"interval", "200ms", {}, "time between two records of I", true},
        {"initial-test", "2s", {}, "for how long after power-on the records have the flag I", true},
        {"print-key", "1s", {}, "in the printer protocol: time between two presses of PRINT", true},
    };
}

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceGibertini>() {
    CatalogEntry entry;
    entry.maker = "Gibertini";
    entry.model = "CRYSTAL protocol, 610 g";
    entry.line = {9600, 7, Parity::None, 1, FlowControl::None};
    entry.balance.capacity = 610;
    entry.balance.lowestLoad = -61;
    entry.balance.zeroRange = 12.2;
    entry.switches = GibertiniSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Gibertini(model, switches));
    };
    return entry;
}

}  // namespace simulator
