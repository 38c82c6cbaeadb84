// MT-SICS, the command set of Mettler Toledo's balances, as the manuals of the Excellence, PR, XS
// and SB lines describe it. Commands are upper case, end in CR LF, parameters follow after one
// blank. Quirks that hosts meet:
//   - SI is answered with the identification of S:        > "SI"  < "S D      12.34 g"
//   - the answer to the reset is the serial number:       > "@"   < I4 A "1126493049"
//   - S, T and Z wait until the pan is at rest, for as long as the stability time-out, and then
//     answer "S I", "T I", "Z I"

#include "simulator/instruments/mettler-toledo.h"

#include <cstdlib>

namespace simulator {
namespace {

/// id, blank, status, blank, value in ten columns, blank, unit: "S S     100.00 g".
constexpr std::size_t valueColumns = 10;

class MtSics : public Dialect {
 public:
    MtSics(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        onPlain("@", [this] { reset(); });
        onPlain("I4", [this] { sayIdentification(); });
        onPlain("S", [this] { sendStable(); });
        onPlain("SI", [this] { sendImmediately(); });
        onPlain("SIR", [this] { sendRepeatedly(); });
        onPlain("Z", [this] { zero(); });
        onPlain("T", [this] { tare(); });
        on("TA", [this](const std::string& parameters) { tareValue(parameters); });
        onPlain("TAC", [this] { clearTare(); });
        on("D", [this](const std::string& parameters) { showText(parameters); });
        onPlain("DW", [this] { showWeight(); });
        on("PWR", [this](const std::string& parameters) { power(parameters); });
    }

    void powerUp() override {
        if (switches_.isOn("power-on-line")) sayIdentification();
    }

    void receiveBreak() override { say("ET"); }

 protected:
    void unknown(const std::string& command) override {
        if (!command.empty()) say("ES");
    }
    void refuse(const std::string&) override { say("EL"); }
    void spoiled() override { say("ET"); }
    bool interrupts(const std::string& command) const override { return command == "@"; }
    void printKey() override { printAtRest(); }

 private:
    bool isOutOfRange(const std::string& id) {
        const auto range = balance().read().range;
        if (range == Reading::Range::inside) return false;
        say(id + (range == Reading::Range::over ? " +" : " -"));
        return true;
    }

    void sayOutcome(const std::string& id, Outcome outcome, const std::string& done) {
        if (outcome == Outcome::done)
            say(done);
        else
            say(id + (outcome == Outcome::tooHigh ? " +" : " -"));
    }

    std::string weightLine(const std::string& id, const std::string& digits) const {
        return id + " " + rightAligned(digits, valueColumns) + " " + balance().data().unit;
    }

    /// Runs `then` with the pan at rest, or answers "id I": busy, switched off, or never at rest.
    void atRest(const std::string& id, Action then) {
        const auto notNow = [this, id] { say(id + " I"); };
        if (balance().isOn())
            whenStable(switches_.time("stability-time-out"), std::move(then), notNow);
        else
            notNow();
    }

    void sayIdentification() { say("I4 A \"" + switches_.text("serial-number") + "\""); }

    // > "@"   < I4 A "1126493049"; what is waited for and repeated ends, the tare stays
    void reset() {
        cancelAll();
        balance().showWeight();
        if (switches_.isOn("reset-answer")) sayIdentification();
    }

    // > "S"   < "S S     100.00 g", "S I", "S +", "S -"
    void sendStable() {
        stopRepeating();
        if (isOutOfRange("S")) return;
        atRest("S", [this] {
            if (!isOutOfRange("S")) say(weightLine("S S", balance().read().digits()));
        });
    }

    /// The print key puts a line between those of other commands.
    void printAtRest() {
        if (!balance().isOn()) return;
        whenStable(
            switches_.time("stability-time-out"), [this] { sayWeightNow(); }, [] {});
    }

    // > "SI"  < "S S     100.00 g", "S D     100.00 g", "S I", "S +", "S -"
    void sendImmediately() {
        stopRepeating();
        sayWeightNow();
    }

    void sayWeightNow() {
        if (isBusy() || !balance().isOn())
            say("S I");
        else if (!isOutOfRange("S"))
            say(weightLine(balance().read().stable ? "S S" : "S D", balance().read().digits()));
    }

    // > "SIR" < the answer of SI again and again, until S, SI, SIR or @
    void sendRepeatedly() {
        stopRepeating();
        every(switches_.time("repeat-interval"), [this] { sayWeightNow(); });
    }

    // > "Z"   < "Z A", "Z I", "Z +", "Z -"
    void zero() {
        atRest("Z", [this] { sayOutcome("Z", balance().zero(), "Z A"); });
    }

    // > "T"   < "T S     100.00 g", "T I", "T +", "T -"
    void tare() {
        atRest("T", [this] {
            const Outcome outcome = balance().tare();
            sayOutcome("T", outcome, weightLine("T S", balance().tareDigits()));
        });
    }

    // > "TA"  or "TA 12.50 g"   < "TA A      12.50 g", "TA L", "TA I"
    void tareValue(const std::string& parameters) {
        if (!balance().isOn()) return say("TA I");
        if (!parameters.empty() && !presetTare(parameters)) return say("TA L");
        say(weightLine("TA A", balance().tareDigits()));
    }

    bool presetTare(const std::string& parameters) {
        char* rest = nullptr;
        const double value = std::strtod(parameters.c_str(), &rest);
        if (rest == parameters.c_str() || rest != " " + balance().data().unit) return false;
        return balance().presetTare(value * balance().data().gramsPerUnit) == Outcome::done;
    }

    void clearTare() {
        balance().clearTare();
        say("TAC A");
    }

    // > D "READY"   < "D A"; a text that the display cannot hold is shown cut
    void showText(const std::string& parameters) {
        const std::size_t length = parameters.size();
        if (length < 2 || parameters.front() != '"' || parameters.back() != '"') return say("D L");
        const std::string text = parameters.substr(1, length - 2);
        const std::size_t width = std::stoul(switches_.text("display-width"));
        balance().showText(text.substr(0, width));
        say(text.size() <= width ? "D A" : "D " + switches_.text("cut-text"));
    }

    void showWeight() {
        balance().showWeight();
        say("DW A");
    }

    // > "PWR 1"   < "PWR A" and then I4 A "1126493049"
    void power(const std::string& parameters) {
        if (parameters != "0" && parameters != "1") return say("PWR L");
        say("PWR A");
        if (parameters == "0") return balance().switchOff();
        balance().switchOn();
        sayIdentification();
    }

    Switches switches_;
};

}  // namespace

std::unique_ptr<Dialect> mtSicsDialect(BalanceModel& model, const Switches& switches) {
    return std::unique_ptr<Dialect>(new MtSics(model, switches));
}

std::vector<SwitchDescription> mtSicsSwitches() {
    return {
        onOff("reset-answer", true, "answers @ with its serial number"),
        onOff("power-on-line", true, "sends its serial number unasked when the mains come on"),
        {"serial-number", "1126493049", {}, "serial number, 7 to 10 characters"},
        {"stability-time-out", "10s", {}, "how long S, T and Z wait for the pan to rest", true},
        {"repeat-interval", "200ms", {}, "time between two weights of SIR", true},
        {"display-width", "14", {"7", "14", "20", "60"}, "characters that the display holds"},
        {"cut-text", "R", {"A", "R", "L"}, "status answered for a text that was cut to fit"},
    };
}

namespace {

CatalogEntry entry(const std::string& name, const std::string& model,
                   const std::string& driverClass, const LineSettings& line,
                   const BalanceData& balance) {
    return {name,    "Mettler Toledo", model,        driverClass, line,
            balance, mtSicsSwitches(), mtSicsDialect};
}

BalanceData balanceOf(double capacity, double readability) {
    BalanceData data;
    data.capacity = capacity;
    data.readability = readability;
    data.lowestLoad = -capacity / 10;
    data.zeroRange = capacity * 0.02;
    return data;
}

constexpr LineSettings sevenEven2400{2400, 7, Parity::even, 1, FlowControl::none};
constexpr LineSettings eightNone9600{9600, 8, Parity::none, 1, FlowControl::none};

}  // namespace

CatalogEntry mettlerToledo() {
    return entry("mettler-toledo", "MT-SICS balance, 610 g", "WbalanceMettlerToledo", sevenEven2400,
                 balanceOf(610, 0.01));
}

CatalogEntry mettlerPr2003() {
    return entry("mettler-pr2003", "PR2003, 2100 g", "WbalanceMettlerPR2003", sevenEven2400,
                 balanceOf(2100, 0.001));
}

CatalogEntry mettlerXs() {
    return entry("mettler-xs", "XS204, 220 g", "WbalanceMettlerXS", eightNone9600,
                 balanceOf(220, 0.0001));
}

CatalogEntry mettlerSb32001() {
    return entry("mettler-sb32001", "SB32001, 32.1 kg", "WbalanceMettlerSB32001", sevenEven2400,
                 balanceOf(32100, 0.1));
}

}  // namespace simulator
