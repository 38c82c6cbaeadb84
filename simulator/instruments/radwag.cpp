// Radwag, the command set that the AS, PS, R, WTC, WTB and PUE C/31 series have in common, as the
// chapter "Communication protocol" of their manuals describes it. Commands and answers end in CR
// LF. A command is confirmed when it begins and answered when it is done; the weights come in
// frames:
//   > "T"    < "T A"  and at rest "T D", "T v" out of the tare range, "T E" never at rest
//   > "S"    < "S A"  and at rest a frame, "S E" never at rest
//   > "SI"   < a frame at once
//   > "SU", "SUI"   the same in the unit that "US mg" has chosen
// A command that can't be carried out now gets "I", one that does not exist "ES". PC lists those
// that exist.

#include "simulator/instruments/radwag.h"

#include <algorithm>

#include "simulator/Text.h"
#include "simulator/instruments/RadwagFrame.h"

namespace simulator {
namespace {

/// The working modes that this balance has, by their numbers.
constexpr int weighing = 1;
constexpr int counting = 2;

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

class Radwag : public Dialect {
 public:
    Radwag(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        for (const Command& command : commands())
            if (command.isKnown) on(command.name, this, command.does);
    }

    void powerUp() override {
        occupied_ = false;
        freeKeys();
    }

 protected:
    void unknown(const std::string& command) override {
        if (!command.empty()) say("ES");
    }
    // < "         18.5 g  "   18 bytes with the line end: no command letters
    void printKey() override {
        whenStable(
            switches_.time("stability-time-out"), [this] { say(radwagMass(readInUnit())); }, [] {});
    }
    bool interrupts(const std::string&) const override {
        return switches_.text("during-wait") == "refuse";
    }
    /// While it waits for the pan or adjusts, nothing else is accessible.
    void execute(const std::string& command) override {
        const std::string name = firstWord(command).first;
        if (occupied_ && knows(name)) return say(name + " I");
        Dialect::execute(command);
    }

 private:
    struct Command {
        const char* name;
        Does<Radwag> does;
        bool isKnown;
    };

    /// Every command there is, in the order of PC, and whether this series knows it.
    std::vector<Command> commands() const {
        const std::string& series = switches_.text("series");
        const bool isTerminal = series == "wtc";
        const bool isAnalyser = series == "ma";
        const bool hasUnits = series == "ps" || series == "hrp";
        const bool adjusts = isAnalyser || series == "hrp";
        return {
            {"Z", &Radwag::zero, true},
            {"T", &Radwag::tare, true},
            {"OT", &Radwag::sayTare, true},
            {"UT", &Radwag::presetTare, true},
            {"S", &Radwag::sendStable, true},
            {"SI", &Radwag::sendImmediately, true},
            {"SU", &Radwag::sendStableInUnit, true},
            {"SUI", &Radwag::sendImmediatelyInUnit, true},
            {"C1", &Radwag::start, true},
            {"C0", &Radwag::stop, true},
            {"CU1", &Radwag::startInUnit, true},
            {"CU0", &Radwag::stopInUnit, true},
            {"DH", &Radwag::setLowLimit, !isTerminal},
            {"UH", &Radwag::setHighLimit, !isTerminal},
            {"ODH", &Radwag::sayLowLimit, !isTerminal},
            {"OUH", &Radwag::sayHighLimit, !isTerminal},
            {"K1", &Radwag::block, isTerminal || isAnalyser},
            {"K0", &Radwag::unblock, isTerminal || isAnalyser},
            {"NB", &Radwag::saySerialNumber, true},
            {"BN", &Radwag::saySeries, !isTerminal},
            {"FS", &Radwag::sayCapacity, !isTerminal},
            {"RV", &Radwag::saySoftware, !isTerminal},
            {"UI", &Radwag::sayUnits, hasUnits},
            {"US", &Radwag::chooseUnit, hasUnits},
            {"UG", &Radwag::sayUnit, hasUnits},
            {"OMI", &Radwag::sayModes, hasUnits},
            {"OMS", &Radwag::chooseMode, hasUnits},
            {"OMG", &Radwag::sayMode, hasUnits},
            {"BP", &Radwag::beep, hasUnits},
            {"SS", &Radwag::pressPrint, isAnalyser},
            {"IC", &Radwag::adjust, adjusts},
            {"PC", &Radwag::sayCommands, true},
        };
    }

    bool knows(const std::string& name) const {
        const auto all = commands();
        return std::any_of(all.begin(), all.end(),
                           [&](const Command& each) { return each.isKnown && name == each.name; });
    }

    // > "PC"  < PC A "Z,T,OT,...", on the WTC "PC -> Z,T,OT,..."
    void sayCommands() {
        std::string list;
        for (const Command& command : commands())
            if (command.isKnown) list += (list.empty() ? "" : ",") + std::string(command.name);
        say(switches_.text("series") == "wtc" ? "PC -> " + list : "PC A " + quoted(list));
    }

    /// Confirms a command and runs `then` with the pan at rest.
    void atRest(const std::string& command, Action then) {
        say(command + " A");
        occupied_ = true;
        whenStable(
            switches_.time("stability-time-out"),
            [this, then = std::move(then)] {
                occupied_ = false;
                then();
            },
            [this, command] {
                occupied_ = false;
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
        atRest("S", [this] { say(frame("S", balance().read())); });
    }

    // > "SU"  < "SU A" "SU   -     8500 mg "
    void sendStableInUnit() {
        atRest("SU", [this] { say(frame("SU", readInUnit())); });
    }

    // > "SI"  < "SI ?       18.5 g  "
    void sendImmediately() { sayNow("SI", balance().read()); }
    void sendImmediatelyInUnit() { sayNow("SUI", readInUnit()); }

    void sayNow(const std::string& command, const Reading& reading) {
        if (isBusy()) return say(command + " I");
        if (switches_.isOn("confirms-at-once")) say(command + " A");
        say(frame(command, reading));
    }

    // > "C1"  < "C1 A" and the frames of SI, until "C0"; "CU1" those of SUI
    void start() {
        begin("C1 A", [this] { say(frame("SI", balance().read())); });
    }
    void startInUnit() {
        begin("CU1 A", [this] { say(frame("SUI", readInUnit())); });
    }
    void begin(const std::string& confirmation, const Action& sendFrame) {
        say(confirmation);
        stopRepeating();
        every(switches_.time("repeat-interval"), sendFrame);
    }

    void stop() { end("C0 A"); }
    void stopInUnit() { end("CU0 A"); }
    void end(const std::string& confirmation) {
        stopRepeating();
        say(confirmation);
    }

    // > "OT"  < "OT     12.50 g   ": without stability and sign, but on the WTC
    void sayTare() {
        const std::string gap = switches_.text("series") == "wtc" ? "   " : "";
        say("OT " + gap + rightAligned(balance().tareDigits(), radwagMassColumns) + " " +
            leftAligned(balance().data().unit, radwagUnitColumns) + (gap.empty() ? " " : ""));
    }

    // > "UT 12.5"   < "UT OK", "UT I", and "ES" for no number
    void presetTare(const std::string& text) {
        const auto value = parseNumber(text);
        if (!value) return unknown("UT");
        const Outcome outcome = balance().presetTare(*value * balance().data().gramsPerUnit);
        say(outcome == Outcome::done ? "UT OK" : "UT I");
    }

    // > "DH 12.5"   < "DH OK"; > "ODH"  < "DH     12.50 g   "
    void setLowLimit(const std::string& text) { setLimit("DH", text, lowLimit_); }
    void setHighLimit(const std::string& text) { setLimit("UH", text, highLimit_); }
    void setLimit(const std::string& name, const std::string& text, double& limit) {
        const auto value = parseNumber(text);
        if (!value) return unknown(name);
        limit = *value;
        say(name + " OK");
    }

    void sayLowLimit() { sayLimit("DH", lowLimit_); }
    void sayHighLimit() { sayLimit("UH", highLimit_); }
    void sayLimit(const std::string& name, double limit) {
        Reading reading = balance().read();
        reading.value = limit;
        say(name + " " + rightAligned(reading.digits(), radwagMassColumns) + " " +
            leftAligned(reading.unit, radwagUnitColumns) + " ");
    }

    // > "K1"  < "K1 OK"  the keys are blocked until "K0" or the next power-off
    void block() {
        blockKeys();
        say("K1 OK");
    }
    void unblock() {
        freeKeys();
        say("K0 OK");
    }

    // > "NB"  < NB A "123456"
    void saySerialNumber() { say("NB A " + quoted(switches_.text("serial-number"))); }
    void saySoftware() { say("RV A " + quoted(switches_.text("software"))); }
    void saySeries() {
        std::string name = switches_.text("series");
        std::transform(name.begin(), name.end(), name.begin(), ::toupper);
        say("BN A " + quoted(name));
    }
    void sayCapacity() {
        Reading full = balance().read();
        full.value = balance().data().capacity / balance().data().gramsPerUnit;
        say("FS A " + quoted(full.digits()));
    }

    // > "UI"  < UI "g, mg, ct" OK
    void sayUnits() {
        std::string list;
        for (const Unit& each : radwagUnits())
            list += (list.empty() ? "" : ", ") + each.text;
        say("UI " + quoted(list) + " OK");
    }

    // > "US mg"   < "US mg OK", "US E"; > "US next"  steps on
    void chooseUnit(const std::string& text) {
        const auto chosen = std::find_if(radwagUnits().begin(), radwagUnits().end(),
                                         [&](const Unit& each) { return each.text == text; });
        if (text == "next")
            unit_ = (unit_ + 1) % radwagUnits().size();
        else if (chosen != radwagUnits().end())
            unit_ = static_cast<std::size_t>(chosen - radwagUnits().begin());
        else
            return say("US E");
        say("US " + radwagUnits()[unit_].text + " OK");
    }

    // > "UG"  < "UG mg OK"
    void sayUnit() { say("UG " + readInUnit().unit + " OK"); }

    // > "OMI" < a line for each mode, between "OMI" and "OK"
    void sayModes() {
        say("OMI");
        say(std::to_string(weighing) + " \"Weighing\"");
        say(std::to_string(counting) + " \"Parts counting\"");
        say("OK");
    }

    // > "OMS 2"   < "OMS OK", "OMS E"
    void chooseMode(const std::string& text) {
        const auto mode = parseWholeNumber(text, weighing, counting);
        if (!mode) return say("OMS E");
        mode_ = *mode;
        say("OMS OK");
    }
    void sayMode() { say("OMG " + std::to_string(mode_) + " OK"); }

    // > "BP 350"  < "BP OK"; times above the longest are cut
    void beep(const std::string& text) {
        constexpr int shortest = 50;
        const auto milliseconds = parseWholeNumber(text, shortest, 1'000'000);
        say(milliseconds ? "BP OK" : "BP E");
    }

    // > "SS"  < "SS OK" and what the print key sends
    void pressPrint() {
        say("SS OK");
        printKey();
    }

    // > "IC"  < "IC A", and "IC D" when it has adjusted, "IC E" when the pan did not rest
    void adjust() {
        say("IC A");
        occupied_ = true;
        after(switches_.time("adjustment-time"), [this] {
            occupied_ = false;
            say(!isBusy() && balance().read().stable ? "IC D" : "IC E");
        });
    }

    /// In the unit that a host has chosen for the display; S and SI keep to the basic unit.
    Reading readInUnit() const {
        const Unit basic{balance().data().unit, balance().data().gramsPerUnit};
        const Unit pieces{"pcs", 1, true};
        if (mode_ == counting) return balance().readIn(pieces);
        return balance().readIn(unit_ == 0 ? basic : radwagUnits()[unit_]);
    }

    std::string frame(const std::string& command, const Reading& reading) const {
        return radwagFrame(command, reading, switches_.text("frame") == "22");
    }

    Switches switches_;
    bool occupied_ = false;  ///< waits for the pan to rest, or adjusts
    std::size_t unit_ = 0;   ///< of the display, by its place in UI
    int mode_ = weighing;
    double lowLimit_ = 0;
    double highLimit_ = 0;
};

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
