// Ohaus Scout Pro and Explorer: lines with the weight and its unit, "?" while the pan moves.
//
//   > "P"    < "       12.34 g      "   print; waits for the pan to rest in stable-only mode ("1S")
//            < "       12.30 g     ?"
//   > "SP"   the same, always at rest; the Scout Pro does not know it and stays silent
//   > "T"    tare; no answer
//   > "0A", "5A", "CA"   automatic print off, every 5 s, continuous
//   > ESC "R"   factory settings, which may be another line rate
//
// What is printed out of range is not documented: here, nothing.

#include "simulator/instruments/ohaus.h"

#include "simulator/Text.h"

namespace simulator {
namespace {

constexpr Time continuousPrintInterval = 200ms;

class OhausPrint : public Dialect {
 public:
    OhausPrint(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r"), switches_(switches) {
        setAnswerEnd("\r\n");
        onPlain("P", [this] { print(); });
        if (switches_.isOn("stable-print")) onPlain("SP", [this] { printAtRest(); });
        onPlain("T", [this] { tare(); });
        onPlain("CA", [this] { printEvery(continuousPrintInterval); });
        onPlain("0A", [this] { stopRepeating(); });
        onPlain("0S", [this] { stableOnly_ = false; });
        onPlain("1S", [this] { stableOnly_ = true; });
        onPlain("\x1bR", [this] { restoreFactorySettings(); });
        if (switches_.isOn("stable-only")) stableOnly_ = true;
    }

 protected:
    /// "5A" prints every 5 s. Everything else that is unknown is ignored.
    void unknown(const std::string& command) override {
        if (command.empty() || command.back() != 'A') return;
        const auto seconds = parseWholeNumber(command.substr(0, command.size() - 1), 1, 3600);
        if (seconds) printEvery(std::chrono::seconds(*seconds));
    }

    /// A line feed behind the carriage return is dropped.
    std::optional<std::string> cutCommand(std::string& received) override {
        if (!received.empty() && received.front() == '\n') received.erase(0, 1);
        return Dialect::cutCommand(received);
    }

    void printKey() override { print(); }

    void execute(const std::string& command) override {
        if (!lost_) Dialect::execute(command);
    }

 private:
    bool isExplorer() const { return switches_.text("line").rfind("explorer", 0) == 0; }

    void print() { stableOnly_ ? printAtRest() : sayReading(); }

    void printEvery(Time period) {
        stopRepeating();
        every(period, [this] { sayReading(); });
    }

    void printAtRest() {
        const auto patience = switches_.time("stability-time-out");
        whenStable(
            patience, [this] { sayReading(); },
            [this] {
                if (isExplorer()) say("ES");
            });
    }

    void sayReading() {
        const Reading reading = balance().read();
        if (reading.range != Reading::Range::inside) return;
        say(line(reading.digits(), reading.unit, reading.stable && !isBusy()));
    }

    std::string line(const std::string& digits, const std::string& unit, bool isStable) const {
        const std::string& layout = switches_.text("line");
        const std::string mark = isStable ? " " : "?";
        const bool isBare = switches_.isOn("numeric-only");
        if (layout == "explorer-pro") {
            const std::string number = rightAligned(digits, 9);
            return isBare ? number + mark : number + " " + leftAligned(unit, 5) + mark;
        }
        if (layout == "explorer" || layout == "scout-pro-narrow") {
            const std::string number = rightAligned(digits, layout == "explorer" ? 10 : 11);
            return number + (isBare ? "" : " " + unit) + (isStable ? "" : " ?");
        }
        const std::string gap = layout == "scout-pro-close-mark" ? "" : " ";
        return rightAligned(digits, 12) + " " + leftAligned(isBare ? "" : unit, 5) + gap + mark;
    }

    void tare() {
        const auto patience = switches_.time("stability-time-out");
        whenStable(
            patience,
            [this] {
                if (balance().zero() != Outcome::done) balance().tare();
            },
            [] {});
    }

    void restoreFactorySettings() {
        cancelAll();
        stableOnly_ = false;
        lost_ = switches_.isOn("reset-changes-line");
        if (switches_.isOn("factory-auto-print")) printEvery(continuousPrintInterval);
    }

    Switches switches_;
    bool stableOnly_ = false;
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
    entry.switches = {
        {"line",
         "scout-pro",
         {"scout-pro", "scout-pro-close-mark", "scout-pro-narrow", "explorer", "explorer-pro"},
         "layout of a printed line"},
        onOff("stable-print", true, "knows SP; a Scout Pro may not, and stays silent"),
        onOff("stable-only", false, "P waits for the pan to rest, as after 1S"),
        onOff("numeric-only", false, "prints no unit"),
        onOff("factory-auto-print", false, "prints continuously after ESC R, until 0A"),
        onOff("reset-changes-line", false, "understands nothing after ESC R: other line settings"),
        {"stability-time-out", "40s", {}, "how long SP and T wait for the pan to rest", true},
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new OhausPrint(model, switches));
    };
    return entry;
}

}  // namespace simulator
