// Radwag, the command set that the AS, PS, R, WTC, WTB and PUE C/31 series have in common, as the
// chapter "Communication protocol" of their manuals describes it. Commands and answers end in CR
// LF. A command is confirmed when it begins and answered when it is done; the weights come in
// frames:
//   > "T"    < "T A"  and at rest "T D", "T v" out of the tare range, "T E" never at rest
//   > "S"    < "S A"  and at rest a frame, "S E" never at rest
//   > "SI"   < a frame at once
// A command that can't be carried out now gets "I", one that does not exist "ES".

#include "simulator/instruments/radwag.h"

namespace simulator {
namespace {

/// command in 3 columns, stability, blank, sign, mass in 9, blank, unit in 3.
constexpr std::size_t commandColumns = 3;
constexpr std::size_t massColumns = 9;
constexpr std::size_t unitColumns = 3;

class Radwag : public Dialect {
 public:
    Radwag(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        onPlain("T", [this] { tare(); });
        onPlain("Z", [this] { zero(); });
        onPlain("S", [this] { sendStable(); });
        onPlain("SI", [this] { sendImmediately(); });
        for (const char* continuous : {"C", "CU"}) {
            onPlain(std::string(continuous) + "1", [this, continuous] { start(continuous); });
            onPlain(std::string(continuous) + "0", [this, continuous] { stop(continuous); });
        }
    }

    void powerUp() override { waiting_ = false; }

 protected:
    void unknown(const std::string& command) override {
        if (!command.empty()) say("ES");
    }
    // < "         18.5 g  "   18 bytes with the line end: no command letters
    void printKey() override {
        whenStable(
            switches_.time("stability-time-out"), [this] { say(mass()); }, [] {});
    }
    bool interrupts(const std::string&) const override {
        return switches_.text("during-wait") == "refuse";
    }

 private:
    /// Confirms a command and runs `then` with the pan at rest.
    void atRest(const std::string& command, Action then) {
        if (waiting_) return say(command + " I");
        say(command + " A");
        waiting_ = true;
        whenStable(
            switches_.time("stability-time-out"),
            [this, then = std::move(then)] {
                waiting_ = false;
                then();
            },
            [this, command] {
                waiting_ = false;
                say(command + " E");
            });
    }

    // > "T"   < "T A" "T D"; neither below zero nor above the capacity
    void tare() {
        atRest("T", [this] { say(balance().tare() == Outcome::done ? "T D" : "T v"); });
    }

    // > "Z"   < "Z A" "Z D"
    void zero() {
        atRest("Z", [this] { say(balance().zero() == Outcome::done ? "Z D" : "Z ^"); });
    }

    // > "S"   < "S A" "S    -      8.5 g  "
    void sendStable() {
        atRest("S", [this] { say(frame("S")); });
    }

    // > "SI"  < "SI ?       18.5 g  "
    void sendImmediately() { say(waiting_ || isBusy() ? "SI I" : frame("SI")); }

    // > "C1"  < "C1 A" and the frames of SI, until "C0"
    void start(const std::string& command) {
        say(command + "1 A");
        stopRepeating();
        every(switches_.time("repeat-interval"), [this] { say(frame("SI")); });
    }

    void stop(const std::string& command) {
        stopRepeating();
        say(command + "0 A");
    }

    std::string frame(const std::string& command) const {
        return leftAligned(command, commandColumns) + (switches_.text("frame") == "22" ? " " : "") +
               mass();
    }

    /// What the frame and the print key's line have in common: stability, sign, mass and unit.
    std::string mass() const {
        const Reading reading = balance().read();
        const std::string digits = massOf(reading);
        const bool isNegative = digits.front() == '-';
        return markOf(reading) + " " + (isNegative ? "-" : " ") +
               rightAligned(digits.substr(isNegative), massColumns) + " " +
               leftAligned(reading.unit, unitColumns);
    }

    /// Out of range there is no mass: it reads zero.
    static std::string massOf(Reading reading) {
        if (reading.range != Reading::Range::inside) reading.value = 0;
        return reading.digits();
    }

    static std::string markOf(const Reading& reading) {
        if (reading.range == Reading::Range::over) return "^";
        if (reading.range == Reading::Range::under) return "v";
        return reading.stable ? " " : "?";
    }

    Switches switches_;
    bool waiting_ = false;  ///< for the pan to rest
};

std::vector<SwitchDescription> radwagSwitches() {
    return {
        {"stability-time-out", "10s", {}, "how long S, T and Z wait for the pan to rest", true},
        {"during-wait",
         "refuse",
         {"refuse", "keep"},
         "whether a command that comes during such a wait gets I, or is carried out after it"},
        {"frame", "21", {"21", "22"}, "bytes of a frame: some models send a blank more"},
        {"repeat-interval", "100ms", {}, "time between two frames of C1 and CU1", true},
    };
}

}  // namespace

CatalogEntry radwag() {
    BalanceData balance;
    balance.capacity = 3000;
    balance.readability = 0.01;
    balance.lowestLoad = -300;
    balance.zeroRange = 60;
    const LineSettings line{9600, 7, Parity::even, 1, FlowControl::none};
    const auto create = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Radwag(model, switches));
    };
    return {"radwag", "Radwag", "PS, 3000 g",     "WbalanceRadwag",
            line,     balance,  radwagSwitches(), create};
}

}  // namespace simulator
