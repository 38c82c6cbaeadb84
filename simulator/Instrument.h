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
    /// `switches` are "name=value" texts, of the entry or of balanceSwitches(); throws
    /// std::invalid_argument for one that does not exist.
    explicit Instrument(const CatalogEntry& entry, const std::vector<std::string>& switches = {});

    Instrument(const Instrument&) = delete;
    Instrument& operator=(const Instrument&) = delete;

    BalanceModel& balance() { return balance_; }
    /// Faults that are over are forgotten then.
    void addFault(const Fault& fault);
    /// The faults of this name that are in force now end; with an empty name all that are.
    void endFaults(const std::string& name);
    void clearFaults() { faults_.clear(); }
    const std::vector<Fault>& faults() const { return faults_; }

    /// Sets a switch while the instrument runs, as someone does at its menu: one of its own, not of
    /// balanceSwitches(), ends what it waits for and repeats. Throws as the constructor does, and
    /// then nothing has changed; checkSwitch only throws.
    void choose(const std::string& setting);
    void checkSwitch(const std::string& setting) const;
    /// Somebody presses a key at the time of the last call.
    void press(Key key);
    /// The host has opened its port.
    void portOpened(Time now);

    /// Something has arrived from the host at `now`.
    void receive(const Character& character, Time now);
    void receive(const std::string& bytes, Time now);
    void receiveBreak(Time now);

    /// Lets time pass up to `now`, which never goes back.
    void advance(Time now);
    /// The answers that have left the instrument until the time of the last call, in order.
    std::vector<std::string> takeAnswers();
    /// The same as one string.
    std::string takeOutput();
    /// When advance is to be called next, if nothing arrives before.
    std::optional<Time> nextEvent() const;

 private:
    Instrument(const CatalogEntry& entry, const Switches& switches);
    Switches switchesWith(const std::string& setting) const;

    struct Answer {
        Time due;
        std::string bytes;
    };

    const Fault* activeFault(const std::string& name) const;
    void advanceTo(Time now);
    std::optional<Time> nextChange() const;
    void applyFaults();
    void applyPower(bool hasPower);
    void collectAnswers();
    void spoil(std::string& bytes);

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
