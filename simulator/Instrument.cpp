#include "simulator/Instrument.h"

#include <algorithm>

#include "simulator/BalanceSettings.h"
#include "simulator/Text.h"

namespace simulator {
namespace {

/// Late answers that are kept; an instrument that goes on sending loses what it says on top.
constexpr std::size_t kMostLateAnswers = 10'000;

Switches Chosen(const CatalogEntry& entry, const std::vector<std::string>& settings) {
    std::vector<SwitchDescription> descriptions = entry.switches;
    descriptions.insert(descriptions.end(), BalanceSwitches().begin(), BalanceSwitches().end());
    Switches switches(descriptions);
    for (const auto& setting : settings)
        switches.Choose(setting);
    return switches;
}

bool IsBalanceSwitch(const std::string& setting) {
    const auto& all = BalanceSwitches();
    return std::any_of(all.begin(), all.end(), [&](const SwitchDescription& each) {
        return each.name == CutAt(setting, '=').first;
    });
}

BalanceData Fitted(const CatalogEntry& entry, const Switches& switches) {
    BalanceData balance = entry.modelBalance ? entry.modelBalance(switches) : entry.balance;
    ApplyBalanceSwitches(switches, balance);
    return balance;
}

}  // namespace

Instrument::Instrument(const CatalogEntry& entry, const std::vector<std::string>& switches)
    : Instrument(entry, Chosen(entry, switches)) {}

Instrument::Instrument(const CatalogEntry& entry, const Switches& switches)
    : entry_(entry),
      switches_(switches),
      balance_(Fitted(entry, switches)),
      dialect_(entry.createDialect(balance_, switches)) {}

Switches Instrument::SwitchesWith(const std::string& setting) const {
    Switches switches = switches_;
    switches.Choose(setting);
    return switches;
}

void Instrument::CheckSwitch(const std::string& setting) const {
    Fitted(entry_, SwitchesWith(setting));
}

void Instrument::Choose(const std::string& setting) {
    const Switches switches = SwitchesWith(setting);
    const BalanceData data = Fitted(entry_, switches);
    balance_.Change(data);
    if (CutAt(setting, '=').first == "unit")
        balance_.ShowUnit(data.unit, data.gramsPerUnit, data.countsPieces);
    switches_ = switches;
    if (IsBalanceSwitch(setting)) return;
    CollectAnswers();
    dialect_ = entry_.createDialect(balance_, switches_);
    if (!hasPower_) dialect_->ForgetEverything();
}

void Instrument::Press(Key key) {
    if (hasPower_) dialect_->Press(key);
    CollectAnswers();
}

void Instrument::PortOpened(Time now) {
    Advance(now);
    if (hasPower_) dialect_->PortOpened();
    CollectAnswers();
}

void Instrument::AddFault(const Fault& fault) {
    const auto isOver = [&](const Fault& each) {
        return each.until && *each.until <= balance_.Now();
    };
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(), isOver), faults_.end());
    faults_.push_back(fault);
}

void Instrument::EndFaults(const std::string& name) {
    const auto ends = [&](const Fault& fault) {
        return (name.empty() || fault.name == name) && fault.IsActive(balance_.Now());
    };
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(), ends), faults_.end());
}

void Instrument::Receive(const Character& character, Time now) {
    Advance(now);
    if (hasPower_) dialect_->Receive(character);
    CollectAnswers();
}

void Instrument::Receive(const std::string& bytes, Time now) {
    for (const char byte : bytes)
        Receive(Character{byte}, now);
}

void Instrument::ReceiveBreak(Time now) {
    Advance(now);
    if (hasPower_) dialect_->ReceiveBreak();
    CollectAnswers();
}

void Instrument::Advance(Time now) {
    for (auto next = NextChange(); next && *next <= now; next = NextChange())
        AdvanceTo(*next);
    AdvanceTo(now);
}

void Instrument::AdvanceTo(Time now) {
    balance_.Advance(now);
    ApplyFaults();
    dialect_->RunDueTasks();
    CollectAnswers();
}

/// The next task of the dialect or the next beginning or end of a fault.
std::optional<Time> Instrument::NextChange() const {
    auto next = dialect_->NextTask();
    const auto consider = [&](Time time) {
        if (time > balance_.Now() && (!next || time < *next)) next = time;
    };
    for (const Fault& fault : faults_) {
        consider(fault.from);
        if (fault.until) consider(*fault.until);
    }
    return next;
}

std::vector<std::string> Instrument::TakeAnswers() {
    std::vector<std::string> answers;
    while (!answers_.empty() && answers_.front().due <= balance_.Now()) {
        answers.push_back(std::move(answers_.front().bytes));
        answers_.pop_front();
    }
    return answers;
}

std::string Instrument::TakeOutput() {
    std::string output;
    for (const auto& answer : TakeAnswers())
        output += answer;
    return output;
}

std::optional<Time> Instrument::NextEvent() const {
    const auto change = NextChange();
    if (answers_.empty()) return change;
    return change ? std::min(*change, answers_.front().due) : answers_.front().due;
}

void Instrument::ApplyFaults() {
    const FaultEffects effects = EffectsAt(balance_.Now());
    ApplyPower(effects.hasPower);
    dialect_->SetBusy(effects.isBusy);
    balance_.ForceUnstable(effects.isBusy);
    balance_.ForceRange(effects.range);
}

void Instrument::ApplyPower(bool hasPower) {
    if (hasPower == hasPower_) return;
    hasPower_ = hasPower;
    dialect_->ForgetEverything();
    if (!hasPower_) return answers_.clear();
    balance_.Restart();
    dialect_->PowerUp();
}

void Instrument::CollectAnswers() {
    const FaultEffects effects = EffectsAt(balance_.Now());
    for (std::string& bytes : dialect_->TakeAnswers()) {
        if (effects.isSilent || answers_.size() >= kMostLateAnswers) continue;
        Spoil(effects, bytes);
        Time due = balance_.Now() + effects.delay;
        if (!answers_.empty()) due = std::max(due, answers_.back().due);
        answers_.push_back({due, bytes});
    }
}

void Instrument::Spoil(const FaultEffects& effects, std::string& bytes) {
    if (effects.longestAnswer) bytes.resize(std::min(bytes.size(), *effects.longestAnswer));
    std::uniform_int_distribution<int> anyByte(0, 255);
    std::string rubbish(effects.rubbish, '\0');
    for (char& byte : rubbish)
        byte = static_cast<char>(anyByte(random_));
    bytes.insert(0, rubbish);
}

}  // namespace simulator
