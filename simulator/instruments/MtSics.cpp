#include "simulator/instruments/MtSics.h"

#include <algorithm>
#include <cmath>

#include "simulator/Text.h"

namespace simulator {
namespace {

/// id, blank, status, blank, value in ten columns, blank, unit: "S S     100.00 g".
constexpr std::size_t valueColumns = 10;

/// A change that SR sends without being told a step: this part of the last weight, and so many
/// steps of the display at least.
constexpr double changingPart = 0.125;
constexpr double leastSteps = 30;

/// The longest time that SC, TC and ZC take.
constexpr int longestMilliseconds = 65'535;

}  // namespace

MtSics::MtSics(BalanceModel& model, const Switches& switches)
    : Dialect(model, "\r\n"),
      switches_(switches),
      model_(mtSicsModel(switches)),
      interval_(switches.time("repeat-interval")) {
    for (const Command& command : commands())
        if (command.isAnswered) on(command.name, this, command.does);
}

std::vector<MtSics::Command> MtSics::commands() const {
    const bool isTimed = switches_.isOn("timed-commands");
    const bool hasTerminal = model_.hasTerminal;
    const bool hasLevel2 = model_.hasLevel2;
    return {
        {0, "I0", &MtSics::sayCommands, true},
        {0, "I1", &MtSics::sayLevels, true},
        {0, "I2", &MtSics::sayType, true},
        {0, "I3", &MtSics::saySoftware, true},
        {0, "I4", &MtSics::sendSerialNumber, true},
        {0, "I5", &MtSics::saySoftwareNumber, true},
        {0, "S", &MtSics::sendStable, true},
        {0, "SI", &MtSics::sendImmediately, true},
        {0, "SIR", &MtSics::sendRepeatedly, true},
        {0, "Z", &MtSics::zero, true},
        {0, "ZI", &MtSics::zeroImmediately, true},
        {0, "@", &MtSics::reset, true},
        {1, "D", &MtSics::showText, hasTerminal},
        {1, "DW", &MtSics::showWeight, hasTerminal},
        {1, "SC", &MtSics::sendInTime, isTimed},
        {1, "SR", &MtSics::sendChanges, true},
        {1, "T", &MtSics::tare, true},
        {1, "TA", &MtSics::tareValue, true},
        {1, "TAC", &MtSics::clearTare, true},
        {1, "TC", &MtSics::tareInTime, isTimed},
        {1, "TI", &MtSics::tareImmediately, true},
        {1, "ZC", &MtSics::zeroInTime, isTimed},
        {2, "C1", &MtSics::adjustAsSet, hasLevel2},
        {2, "C3", &MtSics::adjustInternally, hasLevel2},
        {2, "DAT", &MtSics::setDate, hasLevel2},
        {2, "I10", &MtSics::identify, hasLevel2},
        {2, "I11", &MtSics::sayModel, hasLevel2},
        {2, "M21", &MtSics::chooseUnit, hasLevel2},
        {2, "PWR", &MtSics::power, true},
        {2, "SIS", &MtSics::sayStatus, model_.hasStatus},
        {2, "SNR", &MtSics::sendStableChanges, hasLevel2},
        {2, "TIM", &MtSics::setTime, hasLevel2},
        {2, "UPD", &MtSics::setRate, hasLevel2},
    };
}

void MtSics::unknown(const std::string& command) {
    if (!command.empty()) say("ES");
}

bool MtSics::isOutOfRange(const std::string& id) {
    const auto range = balance().read().range;
    if (range == Reading::Range::inside) return false;
    say(id + (range == Reading::Range::over ? " +" : " -"));
    return true;
}

void MtSics::sayOutcome(const std::string& id, Outcome outcome, const std::string& done) {
    if (outcome == Outcome::done)
        say(done);
    else
        say(id + (outcome == Outcome::tooHigh ? " +" : " -"));
}

std::string MtSics::weightLine(const std::string& id, const std::string& digits) const {
    return id + " " + rightAligned(digits, valueColumns) + " " + balance().data().unit;
}

/// Runs `then` with the pan at rest, or answers "id I": switched off, adjusting, or never at rest.
void MtSics::atRest(const std::string& id, Action then) {
    const auto notNow = [this, id] { say(id + " I"); };
    if (balance().isOn() && !adjusting_)
        whenStable(switches_.time("stability-time-out"), std::move(then), notNow);
    else
        notNow();
}

/// Runs `then` with the pan at rest, or when the time is over: whatever it shows then.
void MtSics::inTime(const std::string& id, const std::string& milliseconds, Action then) {
    const auto time = parseWholeNumber(milliseconds, 0, longestMilliseconds);
    if (!time) return say(id + " L");
    if (isUnable()) return say(id + " I");
    whenStable(Time(*time), then, then);
}

/// The weight that a host has written, "12.50 g"; empty in another unit than that of the answers.
std::optional<double> MtSics::grams(const std::string& weight) const {
    const auto [number, unit] = cutAt(weight, ' ');
    const auto value = parseNumber(number);
    if (!value || unit != balance().data().unit) return std::nullopt;
    return *value * balance().data().gramsPerUnit;
}

// > "S"   < "S S     100.00 g", "S I", "S +", "S -"
void MtSics::sendStable() {
    stopRepeating();
    if (isOutOfRange("S")) return;
    atRest("S", [this] {
        if (!isOutOfRange("S")) say(weightLine("S S", balance().read().digits()));
    });
}

/// The print key puts a line between those of other commands.
void MtSics::printKey() {
    if (!balance().isOn()) return;
    whenStable(
        switches_.time("stability-time-out"), [this] { sayWeightNow(); }, [] {});
}

// > "SI"  < "S S     100.00 g", "S D     100.00 g", "S I", "S +", "S -"
void MtSics::sendImmediately() {
    stopRepeating();
    sayWeightNow();
}

void MtSics::sayWeightNow() {
    if (isUnable())
        say("S I");
    else if (!isOutOfRange("S"))
        say(weightLine(balance().read().stable ? "S S" : "S D", balance().read().digits()));
}

// > "SIR" < the answer of SI again and again, until S, SI, SIR or @
void MtSics::sendRepeatedly() {
    stopRepeating();
    every(interval_, [this] { sayWeightNow(); });
}

// > "SR" or "SR 0.5 g"   < "S S     100.00 g", and with each change "S D", then "S S"
void MtSics::sendChanges(const std::string& step) {
    watch("SR", step);
}

// > "SNR" or "SNR 0.5 g"   < the same, but stable weights only
void MtSics::sendStableChanges(const std::string& step) {
    watch("SNR", step);
}

void MtSics::watch(const std::string& id, const std::string& text) {
    stopRepeating();
    const auto step = grams(text);
    const bool isStep = step && *step > 0;
    if (!text.empty() && !isStep) return say(id + " L");
    const bool saysMoving = id == "SR";
    atRest("S", [this, step, saysMoving] {
        moved_ = true;
        every(balance().data().refresh, [=] { followChange(step, saysMoving); });
    });
}

void MtSics::followChange(std::optional<double> step, bool saysMoving) {
    const Reading reading = balance().read();
    const bool isStable = reading.stable && reading.range == Reading::Range::inside;
    if (!moved_ && hasChanged(reading, step)) {
        moved_ = true;
        if (saysMoving && !isStable) sayWeightNow();
    }
    if (!moved_ || !isStable || isUnable()) return;
    sayWeightNow();
    lastSent_ = reading.value;
    moved_ = false;
}

bool MtSics::hasChanged(const Reading& reading, std::optional<double> step) const {
    const double readability = balance().data().readability;
    const double last = std::fabs(lastSent_) * balance().data().gramsPerUnit;
    const double needed = step.value_or(std::max(changingPart * last, leastSteps * readability));
    const double change = std::fabs(reading.value - lastSent_) * balance().data().gramsPerUnit;
    return change > needed - readability / 2;
}

// > "SC 500"  < the answer of S at rest, or that of SI after half a second
void MtSics::sendInTime(const std::string& milliseconds) {
    stopRepeating();
    inTime("S", milliseconds, [this] { sayWeightNow(); });
}

// > "Z"   < "Z A", "Z I", "Z +", "Z -"
void MtSics::zero() {
    atRest("Z", [this] { sayOutcome("Z", balance().zero(), "Z A"); });
}

// > "ZI"  < "ZI S" at rest, "ZI D" of a moving weight, "ZI I", "ZI +", "ZI -"
void MtSics::zeroImmediately() {
    if (isUnable()) return say("ZI I");
    const std::string done = balance().read().stable ? "ZI S" : "ZI D";
    sayOutcome("ZI", balance().zero(), done);
}

void MtSics::zeroInTime(const std::string& milliseconds) {
    inTime("Z", milliseconds, [this] { sayOutcome("Z", balance().zero(), "Z A"); });
}

// > "T"   < "T S     100.00 g", "T I", "T +", "T -"
void MtSics::tare() {
    atRest("T", [this] { tareNow("T"); });
}

// > "TI"  < "TI S     100.00 g" at rest, "TI D      24.33 g" of a moving weight, "TI I", "TI +"
void MtSics::tareImmediately() {
    if (isUnable()) return say("TI I");
    tareNow("TI");
}

void MtSics::tareInTime(const std::string& milliseconds) {
    inTime("T", milliseconds, [this] { tareNow("T"); });
}

void MtSics::tareNow(const std::string& id) {
    const std::string status = balance().read().stable ? " S" : " D";
    const Outcome outcome = balance().tare();
    sayOutcome(id, outcome, weightLine(id + status, balance().tareDigits()));
}

// > "TA"  or "TA 12.50 g"   < "TA A      12.50 g", "TA L", "TA I"
void MtSics::tareValue(const std::string& parameters) {
    if (isUnable()) return say("TA I");
    if (parameters.empty())
        return say(weightLine("TA " + switches_.text("tare-query"), balance().tareDigits()));
    const auto weight = grams(parameters);
    if (!weight || balance().presetTare(*weight) != Outcome::done) return say("TA L");
    enteredTare_ = balance().tareWeight();
    say(weightLine("TA A", balance().tareDigits()));
}

// > "TAC" < "TAC A", "TAC L", "TAC I"
void MtSics::clearTare(const std::string& parameters) {
    if (isUnable()) return say("TAC I");
    if (!parameters.empty()) return say("TAC L");
    balance().clearTare();
    say("TAC A");
}

}  // namespace simulator
