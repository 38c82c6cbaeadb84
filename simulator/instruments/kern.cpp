// Kern EW, EG-N and EWB, as the manuals' chapters on the interface describe them. A command is two
// characters and CR LF, acknowledged with A00 or refused with E01:
//   > "T_"  < "A00"                       tare
//   > "O8"  < "A00", "+  12.50 G S"       one record at once
//   > "O9"  < "A00", later the record     one record as soon as the pan is at rest
//   > "O1"  < "A00", record after record  without end; "O2" only those at rest; "O0" stops
// Each output command ends the one before it.

#include "simulator/instruments/kern.h"

#include <algorithm>
#include <chrono>
#include <map>

namespace simulator {
namespace {

/// A pan that does not come to rest is waited for as long as it takes.
constexpr Time patience = std::chrono::hours(24);

class Kern : public Dialect {
 public:
    Kern(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        on("T", [this](const std::string&) { tare(); });
        on("O0", [this](const std::string&) { output([] {}); });
        on("O1", [this](const std::string&) { output([this] { repeat(); }); });
        on("O2", [this](const std::string&) { output([this] { repeatAtRest(); }); });
        on("O8", [this](const std::string&) { outputOnce([this] { sayRecord(); }); });
        on("O9", [this](const std::string&) { outputOnce([this] { sayRecordAtRest(); }); });
        // They send when a key is pressed or the load changes, which this balance does not do.
        for (const char* command : {"O3", "O4", "O5", "O6", "O7", "OA", "OB"})
            on(command, [this](const std::string&) { output([] {}); });
    }

 protected:
    void execute(const std::string& command) override {
        const bool isComplete = command.size() == 2;  // the blank of "T " belongs to it
        if (isComplete)
            Dialect::execute(command);
        else
            unknown(command);
    }
    void unknown(const std::string&) override { say("E01"); }
    void spoiled() override { say("E01"); }
    void printKey() override { say(record()); }
    /// A record that is waited for holds nothing back.
    bool interrupts(const std::string&) const override { return true; }

 private:
    void acknowledge() { say("A00"); }

    void tare() {
        if (balance().tare() == Outcome::done)
            acknowledge();
        else
            say("E01");
    }

    /// Begins an output in place of the one before.
    void output(const Action& begin) {
        cancelAll();
        acknowledge();
        begin();
    }

    /// The same for a single record, which some balances acknowledge in another way.
    void outputOnce(const Action& begin) {
        cancelAll();
        if (switches_.text("acknowledgement") == "first") acknowledge();
        begin();
    }

    void repeat() {
        every(switches_.time("interval"), [this] { say(record()); });
    }

    void repeatAtRest() {
        every(switches_.time("interval"), [this] {
            if (balance().read().stable) say(record());
        });
    }

    void sayRecordAtRest() {
        whenStable(
            patience, [this] { sayRecord(); }, [] {});
    }

    void sayRecord() {
        say(record());
        if (switches_.text("acknowledgement") == "last") acknowledge();
    }

    /// Sign, digits, unit, tolerance, status: "+  12.50 G S". In error the digits mean nothing.
    std::string record() {
        const Reading reading = balance().read();
        const bool isNegative = reading.value < 0;
        return (isNegative ? "-" : "+") + columns(reading.digits().substr(isNegative)) +
               unitText(reading.unit) + " " + status(reading);
    }

    static std::string unitText(const std::string& unit) {
        static const std::map<std::string, std::string> texts = {
            {"g", " G"}, {"kg", "KG"}, {"mg", "MG"}, {"oz", "OZ"}, {"PCS", "PC"}};
        return texts.at(unit);
    }

    std::string columns(const std::string& digits) const {
        const std::size_t width = switches_.text("digits") == "7" ? 8 : 7;
        const char fill = switches_.text("fill") == "zero" ? '0' : ' ';
        return std::string(width - std::min(width, digits.size()), fill) + digits;
    }

    static std::string status(const Reading& reading) {
        if (reading.range != Reading::Range::inside) return "E";
        return reading.stable ? "S" : "U";
    }

    Switches switches_;
};

std::vector<SwitchDescription> kernSwitches() {
    return {
        {"acknowledgement",
         "first",
         {"first", "last", "none"},
         "where the A00 of O8 and O9 stands: ahead of the record, behind it, or nowhere"},
        {"digits", "6", {"6", "7"}, "data format: records of 14 or of 15 characters"},
        {"fill", "blank", {"blank", "zero"}, "what stands between the sign and the digits"},
        {"interval", "200ms", {}, "time between two records of O1 and O2", true},
    };
}

}  // namespace

CatalogEntry kern() {
    BalanceData data;
    data.capacity = 620;
    data.lowestLoad = -62;
    data.zeroRange = 12.4;
    const LineSettings line{1200, 8, Parity::none, 2, FlowControl::none};
    const auto create = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Kern(model, switches));
    };
    return {"kern", "Kern", "EW/EG-N/EWB, 620 g", "WbalanceKern_EW_EGN_EWB",
            line,   data,   kernSwitches(),       create};
}

}  // namespace simulator
