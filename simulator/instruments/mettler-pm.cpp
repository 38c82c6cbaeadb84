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
//   > "@"       < "ES", as every unknown command

#include "simulator/instruments/mettler-pm.h"

#include "simulator/Text.h"
#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

/// Identifier in two columns, blank, value in ten, blank, unit: "SD      12.34 g".
constexpr std::size_t identifierColumns = 2;
constexpr std::size_t valueColumns = 10;
constexpr std::size_t idColumns = 7;

class StandardPm : public Dialect {
 public:
    StandardPm(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        onPlain("S", [this] { sendStable(); });
        onPlain("SI", [this] { sendImmediately(); });
        onPlain("SIR", [this] { sendRepeatedly(); });
        onPlain("T", [this] { tareAtRest(); });
        onPlain("TI", [this] { tare(); });
        on("B", [this](const std::string& value) { presetTare(value); });
        on("D", [this](const std::string& text) { balance().showText(text); });
        onPlain("SR", [this] { sendChanges(); });
        onPlain("SNR", [this] { sendChanges(); });
        onPlain("IDX", [this] { say(switches_.text("serial-number").substr(0, idColumns)); });
        on("CA", [this](const std::string& parameters) { adjust(parameters); });
        // Known: settings without an answer, and commands whose answers are not documented.
        for (const char* command :
             {"U", "M", "MI", "ML", "MS", "MZ", "MA", "AD", "ID", "DY", "DX", "W"})
            on(command, [](const std::string&) {});
    }

    void powerUp() override { adjusting_ = false; }

 protected:
    void unknown(const std::string& command) override {
        if (!command.empty()) say("ES");
    }
    void refuse(const std::string&) override { say("EL"); }
    void spoiled() override { say("ET"); }

    /// S that waits does not keep SI.
    bool interrupts(const std::string& command) const override {
        return command == "SI" && stableIsAwaited_;
    }

    void printKey() override {
        whenStable(
            switches_.time("stability-time-out"), [this] { sayWeightNow(); }, [] {});
    }

    /// An empty line repeats the last command on some balances of the family.
    void execute(const std::string& command) override {
        if (!command.empty()) last_ = command;
        Dialect::execute(switches_.isOn("empty-line-repeats") ? last_ : command);
    }

 private:
    bool isOutOfRange() {
        const auto range = balance().read().range;
        if (range == Reading::Range::inside) return false;
        say(range == Reading::Range::over ? "SI+" : "SI-");
        return true;
    }

    void sayWeight() {
        const Reading reading = balance().read();
        say(leftAligned(reading.stable ? "S" : "SD", identifierColumns) + " " +
            rightAligned(reading.digits(), valueColumns) + " " + reading.unit);
    }

    void sendStable() {
        stopRepeating();
        if (adjusting_) return say("SI");
        if (isOutOfRange()) return;
        stableIsAwaited_ = true;
        whenStable(
            switches_.time("stability-time-out"),
            [this] {
                stableIsAwaited_ = false;
                if (!isOutOfRange()) sayWeight();
            },
            [this] {
                stableIsAwaited_ = false;
                say("SI");
            });
    }

    void sendImmediately() {
        stopRepeating();
        sayWeightNow();
    }

    void sendChanges() {
        stopRepeating();
        atEachRest([this] { sayWeightNow(); });
    }

    void adjust(const std::string& parameters) {
        if (parameters == "0") {
            cancelAll();
            adjusting_ = false;
            return;
        }
        if (!parameters.empty() || adjusting_) return say("EL");
        say("CA BEGIN");
        adjusting_ = true;
        after(switches_.time("adjustment-time"), [this] {
            adjusting_ = false;
            say(!isBusy() && balance().read().stable ? "CA END" : "CA ERROR");
        });
    }

    void sayWeightNow() {
        if (isBusy() || adjusting_)
            say("SI");
        else if (!isOutOfRange())
            sayWeight();
    }

    void sendRepeatedly() {
        stopRepeating();
        every(switches_.time("repeat-interval"), [this] { sayWeightNow(); });
    }

    void tareAtRest() {
        whenStable(
            switches_.time("stability-time-out"), [this] { tare(); }, [this] { say("EL"); });
    }

    void tare() {
        if (balance().tare() != Outcome::done) say("EL");
    }

    void presetTare(const std::string& text) {
        const auto value = parseNumber(text);
        if (!value || balance().presetTare(*value * balance().data().gramsPerUnit) != Outcome::done)
            say("EL");
    }

    Switches switches_;
    bool stableIsAwaited_ = false;
    std::string last_;
    bool adjusting_ = false;
};

bool speaksMtSics(const Switches& switches) {
    return switches.text("protocol") == "mt-sics";
}

}  // namespace

CatalogEntry mettlerPm() {
    CatalogEntry entry;
    entry.name = "mettler-pm";
    entry.maker = "Mettler";
    entry.model = "PM, 610 g";
    entry.driverClass = "WbalanceMettlerPM";
    entry.line = {600, 7, Parity::even, 1, FlowControl::none};
    entry.switches = mtSicsSwitches("level-1");
    entry.switches.insert(
        entry.switches.begin(),
        {{"protocol",
          "standard",
          {"standard", "mt-sics"},
          "language; some switches are of MT-SICS only"},
         onOff("empty-line-repeats", false, "repeats the last command on an empty line")});
    entry.modelBalance = [](const Switches& switches) {
        return speaksMtSics(switches) ? mtSicsBalance(switches) : BalanceData();
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        if (speaksMtSics(switches)) return std::unique_ptr<Dialect>(new MtSics(model, switches));
        return std::unique_ptr<Dialect>(new StandardPm(model, switches));
    };
    return entry;
}

}  // namespace simulator
