#pragma once

#include <deque>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "simulator/Time.h"

namespace simulator {

/// What kind of balance it is. Weights in grams.
struct BalanceData {
    double capacity = 610;      ///< largest load that is shown; above it comes overload
    double readability = 0.01;  ///< step of the display: 1, 2 or 5 times a power of ten
    double lowestLoad = -61;    ///< below it comes underload (the pan taken off)
    double zeroRange = 12.2;    ///< zeroing takes up to this much to either side
    std::string unit = "g";     ///< text of the displayed unit
    double gramsPerUnit = 1;    ///< capacity and readability stay in grams
    bool countsPieces = false;  ///< the unit is a piece: whole ones are shown
    Time settling = 150ms;      ///< time constant with which the pan follows the load
    Time stableAfter = 300ms;   ///< how long a reading must keep within one step
    Time refresh = 50ms;        ///< a new reading is taken at each multiple of this time
    double noise = 0;           ///< standard deviation of one reading
    double driftPerHour = 0;    ///< how far the reading drifts in an hour
    unsigned seed = 1;          ///< for the noise; the same seed gives the same readings
};

/// What the display shows.
struct Indication {
    enum class Range { Inside, Over, Under };

    double value = 0;  ///< net weight in the displayed unit, rounded to the readability
    int decimals = 0;  ///< digits behind the point
    std::string unit;  ///< text of the displayed unit
    bool stable = true;
    Range range = Range::Inside;

    /// The number with its decimals and a minus sign where it is below zero: "-12.50".
    std::string Digits() const;
};

/// A unit as it is printed, and what one of it weighs.
struct Unit {
    std::string text;
    double grams = 1;
    bool countsPieces = false;  ///< whole ones are shown
};

/// The result of zeroing or taring.
enum class Outcome { Done, TooHigh, TooLow };

/// A balance without its commands: the load on the pan over time, settling, noise, drift, zero,
/// tare, range, display text and power. All functions refer to the time last given to Advance. The
/// first load counts as settled.
class BalanceModel {
 public:
    explicit BalanceModel(const BalanceData& data);

    const BalanceData& Data() const { return data_; }
    /// Makes it another kind of balance from now on. `stableAfter`, `refresh` and the unit do not
    /// change.
    void Change(const BalanceData& data);
    /// Weights are shown in this unit from now on; `countsPieces`: in whole pieces of that weight.
    void ShowUnit(const std::string& unit, double gramsPerUnit, bool countsPieces = false);
    Unit ShownUnit() const { return {data_.unit, data_.gramsPerUnit, data_.countsPieces}; }

    /// The unit in which weights are sent to the host, if the instrument has one of its own. It is
    /// that of the display until it is set, and again after somebody sets the display.
    void SetHostUnit(const Unit& unit) { hostUnit_ = unit; }
    Unit HostUnit() const { return hostUnit_.value_or(ShownUnit()); }

    /// Makes the weight follow the load so many times as slowly as it does by default.
    void Filter(double slowness) { slowness_ = slowness; }

    /// Moves on to `now`, which never goes back.
    void Advance(Time now);
    Time Now() const { return now_; }
    /// The next time at which the reading can change.
    Time NextRefresh() const { return lastRefresh_ + data_.refresh; }

    /// The load in grams: from now on, from `at` on, or since before the start.
    void SetLoad(double grams);
    void ScheduleLoad(Time at, double grams);
    void StartWithLoad(double grams);

    Indication Read() const { return ReadIn(ShownUnit()); }
    /// The same in another unit than that of the display.
    Indication ReadIn(const Unit& unit) const;

    Outcome Zero();                    ///< the present load is zero; clears the tare
    Outcome Tare();                    ///< the present load is tare; refused below zero
    Outcome PresetTare(double grams);  ///< refused below zero and above the capacity
    void ClearTare() { tare_ = 0; }
    double TareWeight() const { return tare_; }  ///< grams, rounded to the readability
    std::string TareDigits() const { return TareDigitsIn(ShownUnit()); }
    std::string TareDigitsIn(const Unit& unit) const;  ///< with as many decimals as a weight

    /// Switches the balance on: it shows the weight, has no tare, and zeroes if the load allows it.
    void Restart();

    void ShowText(const std::string& text) { displayText_ = text; }
    void ShowWeight() { displayText_.clear(); }
    const std::string& DisplayText() const { return displayText_; }  ///< empty: the weight

    void SwitchOn() { on_ = true; }
    void SwitchOff() { on_ = false; }
    bool IsOn() const { return on_; }

    /// Conditions that faults set: the pan never comes to rest, or the load is out of range.
    void ForceUnstable(bool forced) { forcedUnstable_ = forced; }
    void ForceRange(Indication::Range range) { forcedRange_ = range; }

 private:
    struct LoadChange {
        Time at;
        double grams;
    };

    void Refresh(Time at);
    double RoundToStep(double grams) const;
    double GrossWeight() const { return shown_ - zero_; }
    bool IsStable() const;
    int DecimalsIn(const Unit& unit) const;
    Indication::Range Range() const;

    BalanceData data_;
    std::mt19937 random_;
    std::deque<LoadChange> changes_;
    std::deque<double> recent_;
    Time now_{0};
    Time lastRefresh_{0};
    double load_ = 0;
    double settled_ = 0;
    double drifted_ = 0;
    double shown_ = 0;
    double zero_ = 0;
    double tare_ = 0;
    double slowness_ = 1;
    std::optional<Unit> hostUnit_;
    std::string displayText_;
    bool on_ = true;
    bool forcedUnstable_ = false;
    Indication::Range forcedRange_ = Indication::Range::Inside;
};

}  // namespace simulator
