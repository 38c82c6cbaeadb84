#include "simulator/instruments/MtSics.h"

#include <algorithm>
#include <cmath>

#include "simulator/Text.h"

namespace simulator {
namespace {

/// id, blank, status, blank, value in ten columns, blank, unit: "S S     100.00 g".
constexpr std::size_t kValueColumns = 10;

/// A change that SR sends without being told a step: this part of the last weight, and so many
/// steps of the display at least.
constexpr double kChangingPart = 0.125;
constexpr double kLeastSteps = 30;

/// The longest time that SC, TC and ZC take.
constexpr int kLongestMilliseconds = 65'535;

}  // namespace

MtSics::MtSics(BalanceModel& model, const Switches& switches)
    : Dialect(model, "\r\n"),
      switches_(switches),
      model_(ChosenMtSicsModel(switches)),
      interval_(switches.TimeOf("repeat-interval")),
      wantsAdjustment_(switches.IsOn("adjustment-wanted")) {
    for (const Command& command : Commands())
        if (command.isAnswered) On(command.name, this, command.does);
}

std::vector<MtSics::Command> MtSics::Commands() const {
    std::vector<Command> all = BasicCommands();
    for (const Command& command : FurtherCommands())
        all.push_back(command);
    return all;
}

std::vector<MtSics::Command> MtSics::BasicCommands() const {
    const bool isTimed = switches_.IsOn("timed-commands");
    const bool hasTerminal = model_.hasTerminal;
    return {
        {0, "I0", &MtSics::SayCommands, true},       {0, "I1", &MtSics::SayLevels, true},
        {0, "I2", &MtSics::SayType, true},           {0, "I3", &MtSics::SaySoftware, true},
        {0, "I4", &MtSics::SendSerialNumber, true},  {0, "I5", &MtSics::SaySoftwareNumber, true},
        {0, "S", &MtSics::SendStable, true},         {0, "SI", &MtSics::SendImmediately, true},
        {0, "SIR", &MtSics::SendRepeatedly, true},   {0, "Z", &MtSics::Zero, true},
        {0, "ZI", &MtSics::ZeroImmediately, true},   {0, "@", &MtSics::Reset, true},
        {1, "C", &MtSics::EndCommands, isTimed},     {1, "D", &MtSics::ShowText, hasTerminal},
        {1, "DW", &MtSics::ShowWeight, hasTerminal}, {1, "SC", &MtSics::SendInTime, isTimed},
        {1, "SR", &MtSics::SendChanges, true},       {1, "T", &MtSics::Tare, true},
        {1, "TA", &MtSics::TareValue, true},         {1, "TAC", &MtSics::ClearTare, true},
        {1, "TC", &MtSics::TareInTime, isTimed},     {1, "TI", &MtSics::TareImmediately, true},
        {1, "ZC", &MtSics::ZeroInTime, isTimed},
    };
}

std::vector<MtSics::Command> MtSics::FurtherCommands() const {
    const bool hasLevel2 = model_.hasLevel2;
    const bool hasShownUnit = hasLevel2 && model_.hasTerminal;
    return {
        {2, "C0", &MtSics::SayAdjustment, hasLevel2},
        {2, "C1", &MtSics::AdjustAsSet, hasLevel2},
        {2, "C3", &MtSics::AdjustInternally, hasLevel2},
        {2, "DAT", &MtSics::SetDate, hasLevel2},
        {2, "I10", &MtSics::Identify, hasLevel2},
        {2, "I11", &MtSics::SayModel, hasLevel2},
        {2, "I15", &MtSics::SayMinutes, model_.saysMinutes},
        {2, "M21", &MtSics::ChooseUnit, hasLevel2},
        {2, "M28", &MtSics::SayTemperature, model_.isNew},
        {2, "PWR", &MtSics::Power, true},
        {2, "SIRU", &MtSics::SendRepeatedlyAsShown, hasShownUnit},
        {2, "SIS", &MtSics::SayStatus, model_.isNew},
        {2, "SIU", &MtSics::SendImmediatelyAsShown, hasShownUnit},
        {2, "SNR", &MtSics::SendStableChanges, hasLevel2},
        {2, "SNRU", &MtSics::SendStableChangesAsShown, hasShownUnit},
        {2, "SRU", &MtSics::SendChangesAsShown, hasShownUnit},
        {2, "SU", &MtSics::SendStableAsShown, hasShownUnit},
        {2, "TIM", &MtSics::SetTime, hasLevel2},
        {2, "UPD", &MtSics::SetRate, hasLevel2},
        {2, "WS", &MtSics::MoveDoors, model_.hasDoors},
    };
}

void MtSics::Unknown(const std::string& command) {
    if (!command.empty()) Say("ES");
}

bool MtSics::IsOutOfRange(const std::string& id) {
    const auto range = Balance().Read().range;
    if (range == Indication::Range::Inside) return false;
    Say(id + (range == Indication::Range::Over ? " +" : " -"));
    return true;
}

void MtSics::SayOutcome(const std::string& id, Outcome outcome, const std::string& done) {
    if (outcome == Outcome::Done)
        Say(done);
    else
        Say(id + (outcome == Outcome::TooHigh ? " +" : " -"));
}

std::string MtSics::WeightLine(const std::string& id, const std::string& digits, const Unit& unit) {
    return id + " " + RightAligned(digits, kValueColumns) + " " + unit.text;
}

std::string MtSics::TareLine(const std::string& id) const {
    const Unit unit = Balance().HostUnit();
    return WeightLine(id, Balance().TareDigitsIn(unit), unit);
}

/// Runs `then` with the pan at rest, or answers "id I": switched off, adjusting, or never at rest.
void MtSics::AtRest(const std::string& id, Action then) {
    const auto notNow = [this, id] { Say(id + " I"); };
    if (Balance().IsOn() && !adjusting_)
        WhenStable(switches_.TimeOf("stability-time-out"), std::move(then), notNow);
    else
        notNow();
}

/// Runs `then` with the pan at rest, or when the time is over: whatever it shows then.
void MtSics::InTime(const std::string& id, const std::string& milliseconds, Action then) {
    const auto time = ParseWholeNumber(milliseconds, 0, kLongestMilliseconds);
    if (!time) return Say(id + " L");
    if (IsUnable()) return Say(id + " I");
    WhenStable(Time(*time), then, then);
}

/// The weight that a host has written, "12.50 g"; empty in another unit than this.
std::optional<double> MtSics::Grams(const std::string& weight, const Unit& unit) {
    const auto [number, unitText] = CutAt(weight, ' ');
    const auto value = ParseNumber(number);
    if (!value || unitText != unit.text) return std::nullopt;
    return *value * unit.grams;
}

// > "S"   < "S S     100.00 g", "S I", "S +", "S -"; "SU" in the unit of the display
void MtSics::SayStable(In in) {
    StopRepeating();
    if (IsOutOfRange("S")) return;
    AtRest("S", [this, in] { SayWeightNow(in); });
}

/// The print key puts a line between those of other commands.
void MtSics::PrintKey() {
    if (!Balance().IsOn()) return;
    WhenStable(
        switches_.TimeOf("stability-time-out"), [this] { SayWeightNow(In::HostUnit); }, [] {});
}

// > "SI"  < "S S     100.00 g", "S D     100.00 g", "S I", "S +", "S -"
void MtSics::SayImmediately(In in) {
    StopRepeating();
    SayWeightNow(in);
}

void MtSics::SayWeightNow(In in) {
    if (IsUnable()) return Say("S I");
    if (switches_.IsOn("faulty-cell")) return Say("S S    Error 10b");
    if (IsOutOfRange("S")) return;
    const Indication weight = Balance().ReadIn(UnitOf(in));
    Say(WeightLine(weight.stable ? "S S" : "S D", weight.Digits(), UnitOf(in)));
}

// > "SIR" < the answer of SI again and again, until S, SI, SIR or @
void MtSics::Repeat(In in) {
    StopRepeating();
    Every(interval_, [this, in] { SayWeightNow(in); });
}

// > "SR" or "SR 0.5 g"   < "S S     100.00 g", and with each change "S D", then "S S"
void MtSics::SendChanges(const std::string& step) {
    Watch({"SR", In::HostUnit, true}, step);
}
void MtSics::SendChangesAsShown(const std::string& step) {
    Watch({"SRU", In::ShownUnit, true}, step);
}

// > "SNR" or "SNR 0.5 g"   < the same, but stable weights only
void MtSics::SendStableChanges(const std::string& step) {
    Watch({"SNR", In::HostUnit, false}, step);
}
void MtSics::SendStableChangesAsShown(const std::string& step) {
    Watch({"SNRU", In::ShownUnit, false}, step);
}

void MtSics::Watch(const Watching& watching, const std::string& text) {
    StopRepeating();
    const auto step = Grams(text, UnitOf(watching.in));
    const bool isStep = step && *step > 0;
    if (!text.empty() && !isStep) return Say(watching.id + " L");
    AtRest("S", [this, step, watching] {
        moved_ = true;
        Every(Balance().Data().refresh, [=] { FollowChange(watching, step); });
    });
}

void MtSics::FollowChange(const Watching& watching, std::optional<double> step) {
    const Unit unit = UnitOf(watching.in);
    const Indication weight = Balance().ReadIn(unit);
    const double grams = weight.value * unit.grams;
    const bool isStable = weight.stable && weight.range == Indication::Range::Inside;
    if (!moved_ && HasChanged(grams, step)) {
        moved_ = true;
        if (watching.saysMoving && !isStable) SayWeightNow(watching.in);
    }
    if (!moved_ || !isStable || IsUnable()) return;
    SayWeightNow(watching.in);
    lastSent_ = grams;
    moved_ = false;
}

bool MtSics::HasChanged(double grams, std::optional<double> step) const {
    const double readability = Balance().Data().readability;
    const double needed =
        step.value_or(std::max(kChangingPart * std::fabs(lastSent_), kLeastSteps * readability));
    return std::fabs(grams - lastSent_) > needed - readability / 2;
}

// > "SC 500"  < the answer of S at rest, or that of SI after half a second
void MtSics::SendInTime(const std::string& milliseconds) {
    StopRepeating();
    InTime("S", milliseconds, [this] { SayWeightNow(In::HostUnit); });
}

// > "Z"   < "Z A", "Z I", "Z +", "Z -"
void MtSics::Zero() {
    AtRest("Z", [this] { SayOutcome("Z", Balance().Zero(), "Z A"); });
}

// > "ZI"  < "ZI S" at rest, "ZI D" of a moving weight, "ZI I", "ZI +", "ZI -"
void MtSics::ZeroImmediately() {
    if (IsUnable()) return Say("ZI I");
    const std::string done = Balance().Read().stable ? "ZI S" : "ZI D";
    SayOutcome("ZI", Balance().Zero(), done);
}

void MtSics::ZeroInTime(const std::string& milliseconds) {
    InTime("Z", milliseconds, [this] { SayOutcome("Z", Balance().Zero(), "Z A"); });
}

// > "T"   < "T S     100.00 g", "T I", "T +", "T -"
void MtSics::Tare() {
    AtRest("T", [this] { TareNow("T"); });
}

// > "TI"  < "TI S     100.00 g" at rest, "TI D      24.33 g" of a moving weight, "TI I", "TI +"
void MtSics::TareImmediately() {
    if (IsUnable()) return Say("TI I");
    TareNow("TI");
}

void MtSics::TareInTime(const std::string& milliseconds) {
    InTime("T", milliseconds, [this] { TareNow("T"); });
}

void MtSics::TareNow(const std::string& id) {
    const std::string status = Balance().Read().stable ? " S" : " D";
    const Outcome outcome = Balance().Tare();
    SayOutcome(id, outcome, TareLine(id + status));
}

// > "TA"  or "TA 12.50 g"   < "TA A      12.50 g", "TA L", "TA I"
void MtSics::TareValue(const std::string& parameters) {
    if (IsUnable()) return Say("TA I");
    if (parameters.empty()) return Say(TareLine("TA " + switches_.Text("tare-query")));
    const auto weight = Grams(parameters, Balance().HostUnit());
    if (!weight || Balance().PresetTare(*weight) != Outcome::Done) return Say("TA L");
    enteredTare_ = Balance().TareWeight();
    Say(TareLine("TA A"));
}

// > "TAC" < "TAC A", "TAC L", "TAC I"
void MtSics::ClearTare(const std::string& parameters) {
    if (IsUnable()) return Say("TAC I");
    if (!parameters.empty()) return Say("TAC L");
    Balance().ClearTare();
    Say("TAC A");
}

}  // namespace simulator
