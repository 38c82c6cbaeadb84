// Kern EW, EG-N and EWB, as the manuals' chapters on the interface describe them. A command is two
// characters and CR LF, acknowledged with A00 or refused with E01:
//   > "T_"  < "A00"                       tare
//   > "O8"  < "A00", "+  12.50 G S"       one record at once
//   > "O9"  < "A00", later the record     one record as soon as the pan is at rest
//   > "O1"  < "A00", record after record  without end; "O2" only those at rest; "O0" stops
//   > "O4"  < "A00", one record at rest for each load after an empty pan
//   > "O5"  < "A00", one record whenever the pan has come to rest; "O6" and all while it moves
//   > "O3"  < "A00", one record when the print key is pressed; "O7" and the pan is at rest
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
        on("O3", [this](const std::string&) { output([this] { key_ = KeyOutput::atOnce; }); });
        on("O4", [this](const std::string&) { output([this] { repeatForEachLoad(); }); });
        on("O5", [this](const std::string&) { output([this] { repeatForEachRest(); }); });
        on("O6", [this](const std::string&) { output([this] { repeatWhileMoving(); }); });
        on("O7", [this](const std::string&) { output([this] { key_ = KeyOutput::atRest; }); });
        // Known by name only.
        for (const char* command : {"OA", "OB"})
            on(command, [this](const std::string&) { output([] {}); });
    }

    void powerUp() override { key_ = KeyOutput::atOnce; }

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
    void printKey() override {
        if (key_ == KeyOutput::atOnce) say(record());
        if (key_ == KeyOutput::atRest)
            whenStable(
                patience, [this] { say(record()); }, [] {});
    }
    /// A record that is waited for holds nothing back.
    bool interrupts(const std::string&) const override { return true; }

 private:
    /// What the print key sends: as delivered a record, after most output commands nothing.
    enum class KeyOutput { nothing, atOnce, atRest };

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
        key_ = KeyOutput::nothing;
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

    void repeatForEachRest() {
        atEachRest([this] { say(record()); });
    }

    void repeatWhileMoving() {
        repeatForEachRest();
        every(switches_.time("interval"), [this] {
            if (!balance().read().stable) say(record());
        });
    }

    void repeatForEachLoad() {
        wasEmpty_ = true;
        every(balance().data().refresh, [this] {
            const Reading reading = balance().read();
            const bool isLoaded = reading.value > 0;
            if (!isLoaded) wasEmpty_ = true;
            if (!isLoaded || !wasEmpty_ || !reading.stable) return;
            say(record());
            wasEmpty_ = false;
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
    KeyOutput key_ = KeyOutput::atOnce;
    bool wasEmpty_ = true;  ///< since the last record of O4
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
