#pragma once

#include <deque>
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
    double driftPerHour = 0;    ///< by which the reading creeps away
    unsigned seed = 1;          ///< of the noise; the same seed gives the same readings
};

/// What the display shows.
struct Reading {
    enum class Range { inside, over, under };

    double value = 0;  ///< net weight in the displayed unit, rounded to the readability
    int decimals = 0;  ///< digits behind the point
    std::string unit;  ///< text of the displayed unit
    bool stable = true;
    Range range = Range::inside;

    /// The number with its decimals and a minus sign where it is below zero: "-12.50".
    std::string digits() const;
};

/// A unit as it is printed, and what one of it weighs.
struct Unit {
    std::string text;
    double grams = 1;
    bool countsPieces = false;  ///< whole ones are shown
};

/// What came of zeroing or taring.
enum class Outcome { done, tooHigh, tooLow };

/// What a balance is, apart from what it says: the load on the pan over time, settling, noise,
/// drift, zero, tare, range, display text and power. Everything speaks about the time last given to
/// advance; the load at the very beginning has been on the pan for ever.
class BalanceModel {
 public:
    explicit BalanceModel(const BalanceData& data);

    const BalanceData& data() const { return data_; }
    /// It is another kind of balance from now on; `stableAfter`, `refresh` and the unit stay as
    /// they were.
    void change(const BalanceData& data);
    /// Weights are shown in this unit from now on; `countsPieces`: in whole pieces of that weight.
    void showUnit(const std::string& unit, double gramsPerUnit, bool countsPieces = false);

    /// The pan follows the load so many times as slowly as the balance does by itself.
    void filter(double slowness) { slowness_ = slowness; }

    /// Moves on to `now`, which never goes back.
    void advance(Time now);
    Time now() const { return now_; }
    /// The next time at which the reading can change.
    Time nextRefresh() const { return lastRefresh_ + data_.refresh; }

    /// The load in grams: from now on (settling), from `at` on, or since ever.
    void setLoad(double grams);
    void scheduleLoad(Time at, double grams);
    void startWithLoad(double grams);

    Reading read() const { return readIn({data_.unit, data_.gramsPerUnit, data_.countsPieces}); }
    /// The same in another unit than that of the display.
    Reading readIn(const Unit& unit) const;

    Outcome zero();                    ///< the present load is zero; clears the tare
    Outcome tare();                    ///< the present load is tare; refused below zero
    Outcome presetTare(double grams);  ///< refused below zero and above the capacity
    void clearTare() { tare_ = 0; }
    double tareWeight() const { return tare_; }  ///< grams, rounded to the readability
    std::string tareDigits() const;              ///< with the display's decimals

    /// Switched on anew: weight display, no tare, and zero wherever that is allowed.
    void restart();

    void showText(const std::string& text) { displayText_ = text; }
    void showWeight() { displayText_.clear(); }
    const std::string& displayText() const { return displayText_; }  ///< empty: the weight

    void switchOn() { on_ = true; }
    void switchOff() { on_ = false; }
    bool isOn() const { return on_; }

    /// Conditions forced from outside: a pan that never comes to rest, a balance out of its range.
    void forceUnstable(bool forced) { forcedUnstable_ = forced; }
    void forceRange(Reading::Range range) { forcedRange_ = range; }

 private:
    struct LoadChange {
        Time at;
        double grams;
    };

    void refresh(Time at);
    double roundToStep(double grams) const;
    double grossWeight() const { return shown_ - zero_; }
    bool isStable() const;
    int decimalsIn(const Unit& unit) const;
    Reading::Range range() const;

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
    std::string displayText_;
    bool on_ = true;
    bool forcedUnstable_ = false;
    Reading::Range forcedRange_ = Reading::Range::inside;
};

}  // namespace simulator
