#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "simulator/Catalog.h"
#include "simulator/Fault.h"

namespace simulator {

/// A complete simulated instrument: balance model, dialect and faults. It takes characters and
/// returns bytes, both with their times. It says when it must be called next. Used from one thread.
class Instrument {
 public:
    /// `switches` are "name=value" texts for switches of the entry or of BalanceSwitches(). Throws
    /// std::invalid_argument for one that does not exist.
    explicit Instrument(const CatalogEntry& entry, const std::vector<std::string>& switches = {});

    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    BalanceModel& Balance() { return balance_; }
    /// Adds a fault, and forgets the faults that are over.
    void AddFault(const Fault& fault);
    /// Ends the faults of this name that are in force; with an empty name all faults in force.
    void EndFaults(const std::string& name);
    void ClearFaults() { faults_.clear(); }
    const std::vector<Fault>& Faults() const { return faults_; }
    /// What the faults do at `now`, which may be later than the time of the last call.
    FaultEffects EffectsAt(Time now) const { return EffectsOf(faults_, now); }

    /// Sets a switch while the instrument runs, as somebody does in its menu. A switch of the entry
    /// ends what the instrument waits for and repeats; a switch of BalanceSwitches() does not.
    /// Throws as the constructor does, and then changes nothing. CheckSwitch only checks.
    void Choose(const std::string& setting);
    void CheckSwitch(const std::string& setting) const;
    /// The commands of its table, with its present switches.
    std::vector<std::string> CommandNames() const { return dialect_->CommandNames(); }
    /// Somebody presses a key at the time of the last call.
    void Press(Key key);
    /// The host has opened its port.
    void PortOpened(Time now);

    /// Something has arrived from the host at `now`.
    void Receive(const Character& character, Time now);
    void Receive(const std::string& bytes, Time now);
    void ReceiveBreak(Time now);

    /// Lets time pass up to `now`, which never goes back.
    void Advance(Time now);
    /// The answers that have left the instrument until the time of the last call, in order.
    std::vector<std::string> TakeAnswers();
    /// The same as one string.
    std::string TakeOutput();
    /// When advance is to be called next, if nothing arrives before.
    std::optional<Time> NextEvent() const;

 private:
    Instrument(const CatalogEntry& entry, const Switches& switches);
    Switches SwitchesWith(const std::string& setting) const;

    struct Answer {
        Time due;
        std::string bytes;
    };

    void AdvanceTo(Time now);
    std::optional<Time> NextChange() const;
    void ApplyFaults();
    void ApplyPower(bool hasPower);
    void CollectAnswers();
    void Spoil(const FaultEffects& effects, std::string& bytes);

    CatalogEntry entry_;
    Switches switches_;
    BalanceModel balance_;
    std::unique_ptr<Dialect> dialect_;
    std::vector<Fault> faults_;
    std::deque<Answer> answers_;
    std::mt19937 random_{1};
    bool hasPower_ = true;
};

}  // namespace simulator
