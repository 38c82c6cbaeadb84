// Gibertini, as the CRYSTAL and EU-C LCD manuals describe it. Commands are a letter and CR, LF is
// ignored; every command that is accepted is answered, in the CRYSTAL protocol with a record:
//   > "B"   < "    123.45 g   DS"   valid and stable; "DI" unstable, "OE" and "UE" out of range
//   > "T"   < "    123.45 g   TS"   taring
//   > "I"   < record after record, until "F"
// Two other protocols know no flags: EURO answers with the measure alone, PRINTER is silent and
// sends a line when someone presses the PRINT key, once the pan is at rest.

#include "simulator/instruments/gibertini.h"

#include <algorithm>

namespace simulator {
namespace {

constexpr Time patience = 60s;

class Gibertini : public Dialect {
 public:
    Gibertini(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r"), switches_(switches) {
        setAnswerEnd("\r\n");
        if (isProtocol("printer")) {
            pressPrintKey();
            return;
        }
        onPlain("B", [this] { sayMeasure(); });
        onPlain("T", [this] { tare(); });
        onPlain("C", [this] { sayMeasure('C'); });
        onPlain("I", [this] { repeat(); });
        onPlain("F", [this] { stop(); });
        if (switches_.isOn("continuous")) repeat();
    }

    void powerUp() override {
        testedAt_ = now() + switches_.time("initial-test");
        if (isProtocol("printer"))
            pressPrintKey();
        else if (switches_.isOn("continuous"))
            repeat();
    }

 protected:
    std::optional<std::string> cutCommand(std::string& received) override {
        received.erase(std::remove(received.begin(), received.end(), '\n'), received.end());
        return Dialect::cutCommand(received);
    }
    void unknown(const std::string&) override {}
    /// Also where PRINT is said to belong to the printer protocol: the line of the protocol.
    void printKey() override {
        whenStable(
            patience, [this] { isProtocol("printer") ? say(measureAndUnit()) : sayMeasure(); },
            [] {});
    }
    /// A tare that waits for the pan holds nothing back.
    bool interrupts(const std::string&) const override { return true; }

 private:
    bool isProtocol(const std::string& name) const { return switches_.text("protocol") == name; }

    void sayMeasure(char state = 'D') {
        say(isProtocol("euro") ? rightAligned(balance().read().digits(), 9) : record(state));
    }

    void tare() {
        sayMeasure('T');
        const auto done = [this] {
            balance().tare();
            if (switches_.isOn("tare-done")) sayMeasure();
        };
        whenStable(patience, done, [] {});
    }

    void repeat() {
        stopRepeating();
        every(switches_.time("interval"), [this] { sayMeasure(); });
    }

    void stop() {
        stopRepeating();
        sayMeasure();
    }

    void pressPrintKey() {
        after(switches_.time("print-key"), [this] {
            printKey();
            pressPrintKey();
        });
    }

    std::string measureAndUnit() const {
        const Reading reading = balance().read();
        return rightAligned(reading.digits(), 10) + " " + leftAligned(reading.unit, 3);
    }

    /// Measure, unit, two flags: "    123.45 g   DS".
    std::string record(char state) const {
        const Reading reading = balance().read();
        std::string flags = {state, reading.stable ? 'S' : 'I'};
        if (state == 'D') flags[0] = switches_.text("flag").front();
        if (now() < testedAt_) flags[0] = 'I';
        if (reading.range == Reading::Range::over) flags = "OE";
        if (reading.range == Reading::Range::under) flags = "UE";
        return measureAndUnit() + " " + flags;
    }

    Switches switches_;
    Time testedAt_{0};
};

std::vector<SwitchDescription> gibertiniSwitches() {
    return {
        {"protocol",
         "crystal",
         {"crystal", "euro", "printer"},
         "records with flags, the measure alone, or lines of the PRINT key only"},
        {"flag",
         "D",
         {"D", "C", "Z", "I"},
         "of a record: valid, calibration, zero acquisition, initial test"},
        onOff("tare-done", false, "sends a second record when the taring that T began is done"),
        onOff("continuous", false, "sends records from the switching on, as I does, until F"),
        {"interval", "200ms", {}, "time between two records of I", true},
        {"initial-test", "2s", {}, "for how long records say I after the mains came on", true},
        {"print-key", "1s", {}, "in the printer protocol: time between two presses of PRINT", true},
    };
}

}  // namespace

CatalogEntry gibertini() {
    BalanceData data;
    data.capacity = 610;
    data.lowestLoad = -61;
    data.zeroRange = 12.2;
    const LineSettings line{9600, 7, Parity::none, 1, FlowControl::none};
    const auto create = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Gibertini(model, switches));
    };
    return {"gibertini", "Gibertini", "CRYSTAL protocol, 610 g", "WbalanceGibertini",
            line,        data,        gibertiniSwitches(),       create};
}

}  // namespace simulator
