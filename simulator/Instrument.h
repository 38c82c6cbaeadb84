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

/// A complete simulated instrument: what it is, what it says and what is wrong with it. Characters
/// go in and bytes come out, both with their time; it knows when it wants to be called next. Used
/// from one thread.
class Instrument {
 public:
    /// `switches` are "name=value" texts, of the entry or of BalanceSwitches(); throws
    /// std::invalid_argument for one that does not exist.
    explicit Instrument(const CatalogEntry& entry, const std::vector<std::string>& switches = {});

    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    BalanceModel& Balance() { return balance_; }
    /// Faults that are over are forgotten then.
    void AddFault(const Fault& fault);
    /// The faults of this name that are in force now end; with an empty name all that are.
    void EndFaults(const std::string& name);
    void ClearFaults() { faults_.clear(); }
    const std::vector<Fault>& Faults() const { return faults_; }
    /// What the faults do at a time that may be later than that of the last call.
    FaultEffects EffectsAt(Time now) const { return EffectsOf(faults_, now); }

    /// Sets a switch while the instrument runs, as someone does at its menu: one of its own, not of
    /// BalanceSwitches(), ends what it waits for and repeats. Throws as the constructor does, and
    /// then nothing has changed; CheckSwitch only throws.
    void Choose(const std::string& setting);
    void CheckSwitch(const std::string& setting) const;
    /// What its table of commands holds, as it is set now.
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
