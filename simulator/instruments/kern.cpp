// Kern EW, EG-N and EWB, as the manuals' chapters on the interface describe them. A command is two
// characters and CR LF, acknowledged with A00 or refused with E01:
//   > "T_"  < "A00"                       tare; below zero, zero
//   > "O8"  < "A00", "+  12.50 G S"       one record at once
//   > "O9"  < "A00", later the record     one record as soon as the pan is at rest
//   > "O1"  < "A00", record after record  without end; "O2" only those at rest; "O0" stops
//   > "O4"  < "A00", one record at rest for each load after an empty pan
//   > "O5"  < "A00", one record whenever the pan has come to rest; "O6" and all while it moves
//   > "O3"  < "A00", one record when the print key is pressed; "O7" and the pan is at rest
// Each output command ends the one before it.

#include <algorithm>
#include <chrono>
#include <map>

#include "simulator/Catalog.h"

namespace simulator {
namespace {

/// A pan that does not come to rest is waited for as long as it takes.
constexpr Time kPatience = std::chrono::hours(24);

class Kern : public Dialect {
 public:
    Kern(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        On("T", [this](const std::string&) { Tare(); });
        On("O0", [this](const std::string&) { Output([] {}); });
        On("O1", [this](const std::string&) { Output([this] { Repeat(); }); });
        On("O2", [this](const std::string&) { Output([this] { RepeatAtRest(); }); });
        On("O8", [this](const std::string&) { OutputOnce([this] { SayRecord(); }); });
        On("O9", [this](const std::string&) { OutputOnce([this] { SayRecordAtRest(); }); });
        On("O3", [this](const std::string&) { Output([this] { key_ = KeyOutput::AtOnce; }); });
        On("O4", [this](const std::string&) { Output([this] { RepeatForEachLoad(); }); });
        On("O5", [this](const std::string&) { Output([this] { RepeatForEachRest(); }); });
        On("O6", [this](const std::string&) { Output([this] { RepeatWhileMoving(); }); });
        On("O7", [this](const std::string&) { Output([this] { key_ = KeyOutput::AtRest; }); });
        // Known by name only.
        for (const char* command : {"OA", "OB"})
            On(command, [this](const std::string&) { Output([] {}); });
    }

    void PowerUp() override { key_ = KeyOutput::AtOnce; }

 protected:
    void Execute(const std::string& command) override {
        const bool isComplete = command.size() == 2;  // the blank of "T " belongs to it
        if (isComplete)
            Dialect::Execute(command);
        else
            Unknown(command);
    }
    void Unknown(const std::string& /*command*/) override { Say("E01"); }
    void Spoiled() override { Say("E01"); }
    void PrintKey() override {
        if (key_ == KeyOutput::AtOnce) Say(Record());
        if (key_ == KeyOutput::AtRest)
            WhenStable(
                kPatience, [this] { Say(Record()); }, [] {});
    }
    /// A record that is waited for holds nothing back.
    bool Interrupts(const std::string& /*command*/) const override { return true; }

 private:
    /// What the print key sends: as delivered a record, after most output commands nothing.
    enum class KeyOutput { Nothing, AtOnce, AtRest };

    void Acknowledge() { Say("A00"); }

    /// Tare and zero are one: what stands a little below zero is zeroed.
    void Tare() {
        const bool isDone = Balance().Tare() == Outcome::Done || Balance().Zero() == Outcome::Done;
        isDone ? Acknowledge() : Say("E01");
    }

    /// Begins an output in place of the one before.
    void Output(const Action& begin) {
        CancelAll();
        Acknowledge();
        key_ = KeyOutput::Nothing;
        begin();
    }

    /// The same for a single record, which some balances acknowledge in another way.
    void OutputOnce(const Action& begin) {
        CancelAll();
        if (switches_.Text("acknowledgement") == "first") Acknowledge();
        begin();
    }

    void Repeat() {
        Every(switches_.TimeOf("interval"), [this] { Say(Record()); });
    }

    void RepeatAtRest() {
        Every(switches_.TimeOf("interval"), [this] {
            if (Balance().Read().stable) Say(Record());
        });
    }

    void RepeatForEachRest() {
        AtEachRest([this] { Say(Record()); });
    }

    void RepeatWhileMoving() {
        RepeatForEachRest();
        Every(switches_.TimeOf("interval"), [this] {
            if (!Balance().Read().stable) Say(Record());
        });
    }

    void RepeatForEachLoad() {
        wasEmpty_ = true;
        Every(Balance().Data().refresh, [this] {
            const Indication indication = Balance().Read();
            const bool isLoaded = indication.value > 0;
            if (!isLoaded) wasEmpty_ = true;
            if (!isLoaded || !wasEmpty_ || !indication.stable) return;
            Say(Record());
            wasEmpty_ = false;
        });
    }

    void SayRecordAtRest() {
        WhenStable(
            kPatience, [this] { SayRecord(); }, [] {});
    }

    void SayRecord() {
        Say(Record());
        if (switches_.Text("acknowledgement") == "last") Acknowledge();
    }

    /// Sign, digits, unit, tolerance, status: "+  12.50 G S". In error the digits mean nothing.
    std::string Record() {
        const Indication indication = Balance().Read();
        const bool isNegative = indication.value < 0;
        return (isNegative ? "-" : "+") + Columns(indication.Digits().substr(isNegative ? 1 : 0)) +
               UnitText(indication.unit) + " " + Status(indication);
    }

    static std::string UnitText(const std::string& unit) {
        static const std::map<std::string, std::string> texts = {
            {"g", " G"}, {"kg", "KG"}, {"mg", "MG"}, {"oz", "OZ"}, {"PCS", "PC"}};
        return texts.at(unit);
    }

    std::string Columns(const std::string& digits) const {
        const std::size_t width = switches_.Text("digits") == "7" ? 8 : 7;
        const char fill = switches_.Text("fill") == "zero" ? '0' : ' ';
        return std::string(width - std::min(width, digits.size()), fill) + digits;
    }

    static std::string Status(const Indication& indication) {
        if (indication.range != Indication::Range::Inside) return "E";
        return indication.stable ? "S" : "U";
    }

    Switches switches_;
    KeyOutput key_ = KeyOutput::AtOnce;
    bool wasEmpty_ = true;  ///< since the last record of O4
};

std::vector<SwitchDescription> KernSwitches() {
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

template <>
CatalogEntry EntryOf<WbalanceKern_EW_EGN_EWB>() {
    CatalogEntry entry;
    entry.maker = "Kern";
    entry.model = "EW/EG-N/EWB, 620 g";
    entry.line = {1200, 8, Parity::None, 2, FlowControl::None};
    entry.balance.capacity = 620;
    entry.balance.lowestLoad = -62;
    entry.balance.zeroRange = 12.4;
    entry.switches = KernSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new Kern(model, switches));
    };
    return entry;
}

}  // namespace simulator
