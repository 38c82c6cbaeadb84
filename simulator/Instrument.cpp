#include "simulator/Instrument.h"

#include <algorithm>

#include "simulator/BalanceSettings.h"
#include "simulator/Text.h"

namespace simulator {
namespace {

/// Late answers that are kept; an instrument that goes on sending loses what it says on top.
constexpr std::size_t mostLateAnswers = 10'000;

Switches chosen(const CatalogEntry& entry, const std::vector<std::string>& settings) {
    std::vector<SwitchDescription> descriptions = entry.switches;
    descriptions.insert(descriptions.end(), balanceSwitches().begin(), balanceSwitches().end());
    Switches switches(descriptions);
    for (const auto& setting : settings)
        switches.choose(setting);
    return switches;
}

bool isBalanceSwitch(const std::string& setting) {
    const auto& all = balanceSwitches();
    return std::any_of(all.begin(), all.end(), [&](const SwitchDescription& each) {
        return each.name == cutAt(setting, '=').first;
    });
}

BalanceData fitted(const CatalogEntry& entry, const Switches& switches) {
    BalanceData balance = entry.modelBalance ? entry.modelBalance(switches) : entry.balance;
    applyBalanceSwitches(switches, balance);
    return balance;
}

}  // namespace

Instrument::Instrument(const CatalogEntry& entry, const std::vector<std::string>& switches)
    : Instrument(entry, chosen(entry, switches)) {}

Instrument::Instrument(const CatalogEntry& entry, const Switches& switches)
    : entry_(entry),
      switches_(switches),
      balance_(fitted(entry, switches)),
      dialect_(entry.createDialect(balance_, switches)) {}

Switches Instrument::switchesWith(const std::string& setting) const {
    Switches switches = switches_;
    switches.choose(setting);
    return switches;
}

void Instrument::checkSwitch(const std::string& setting) const {
    fitted(entry_, switchesWith(setting));
}

void Instrument::choose(const std::string& setting) {
    const Switches switches = switchesWith(setting);
    const BalanceData data = fitted(entry_, switches);
    balance_.change(data);
    if (cutAt(setting, '=').first == "unit")
        balance_.showUnit(data.unit, data.gramsPerUnit, data.countsPieces);
    switches_ = switches;
    if (isBalanceSwitch(setting)) return;
    collectAnswers();
    dialect_ = entry_.createDialect(balance_, switches_);
    if (!hasPower_) dialect_->forgetEverything();
}

void Instrument::press(Key key) {
    if (hasPower_) dialect_->press(key);
    collectAnswers();
}

void Instrument::portOpened(Time now) {
    advance(now);
    if (hasPower_) dialect_->portOpened();
    collectAnswers();
}

void Instrument::addFault(const Fault& fault) {
    const auto isOver = [&](const Fault& each) {
        return each.until && *each.until <= balance_.now();
    };
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(), isOver), faults_.end());
    faults_.push_back(fault);
}

void Instrument::endFaults(const std::string& name) {
    const auto ends = [&](const Fault& fault) {
        return (name.empty() || fault.name == name) && fault.isActive(balance_.now());
    };
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(), ends), faults_.end());
}

void Instrument::receive(const Character& character, Time now) {
    advance(now);
    if (hasPower_) dialect_->receive(character);
    collectAnswers();
}

void Instrument::receive(const std::string& bytes, Time now) {
    for (const char byte : bytes)
        receive(Character{byte}, now);
}

void Instrument::receiveBreak(Time now) {
    advance(now);
    if (hasPower_) dialect_->receiveBreak();
    collectAnswers();
}

void Instrument::advance(Time now) {
    for (auto next = nextChange(); next && *next <= now; next = nextChange())
        advanceTo(*next);
    advanceTo(now);
}

void Instrument::advanceTo(Time now) {
    balance_.advance(now);
    applyFaults();
    dialect_->runDueTasks();
    collectAnswers();
}

/// The next task of the dialect or the next beginning or end of a fault.
std::optional<Time> Instrument::nextChange() const {
    auto next = dialect_->nextTask();
    const auto consider = [&](Time time) {
        if (time > balance_.now() && (!next || time < *next)) next = time;
    };
    for (const Fault& fault : faults_) {
        consider(fault.from);
        if (fault.until) consider(*fault.until);
    }
    return next;
}

std::vector<std::string> Instrument::takeAnswers() {
    std::vector<std::string> answers;
    while (!answers_.empty() && answers_.front().due <= balance_.now()) {
        answers.push_back(std::move(answers_.front().bytes));
        answers_.pop_front();
    }
    return answers;
}

std::string Instrument::takeOutput() {
    std::string output;
    for (const auto& answer : takeAnswers())
        output += answer;
    return output;
}

std::optional<Time> Instrument::nextEvent() const {
    const auto change = nextChange();
    if (answers_.empty()) return change;
    return change ? std::min(*change, answers_.front().due) : answers_.front().due;
}

const Fault* Instrument::activeFault(const std::string& name) const {
    const auto found = std::find_if(faults_.begin(), faults_.end(), [&](const Fault& fault) {
        return fault.name == name && fault.isActive(balance_.now());
    });
    return found == faults_.end() ? nullptr : &*found;
}

void Instrument::applyFaults() {
    applyPower(!activeFault("power-cut"));
    const bool busy = activeFault("busy");
    dialect_->setBusy(busy);
    balance_.forceUnstable(busy);
    auto range = Reading::Range::inside;
    if (activeFault("overload")) range = Reading::Range::over;
    if (activeFault("underload")) range = Reading::Range::under;
    balance_.forceRange(range);
}

void Instrument::applyPower(bool hasPower) {
    if (hasPower == hasPower_) return;
    hasPower_ = hasPower;
    dialect_->forgetEverything();
    if (!hasPower_) return answers_.clear();
    balance_.restart();
    dialect_->powerUp();
}

void Instrument::collectAnswers() {
    for (std::string& bytes : dialect_->takeAnswers()) {
        if (activeFault("silent") || answers_.size() >= mostLateAnswers) continue;
        spoil(bytes);
        const Fault* late = activeFault("late");
        Time due = balance_.now() + (late ? *parseTime(late->value) : Time(0));
        if (!answers_.empty()) due = std::max(due, answers_.back().due);
        answers_.push_back({due, bytes});
    }
}

void Instrument::spoil(std::string& bytes) {
    if (const Fault* truncated = activeFault("truncated"))
        bytes.resize(std::min<std::size_t>(bytes.size(), std::stoul(truncated->value)));
    if (const Fault* noise = activeFault("noise")) {
        std::uniform_int_distribution<int> anyByte(0, 255);
        std::string rubbish(std::stoul(noise->value), '\0');
        for (char& byte : rubbish)
            byte = static_cast<char>(anyByte(random_));
        bytes.insert(0, rubbish);
    }
}

}  // namespace simulator
