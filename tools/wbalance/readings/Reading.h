#pragma once

#include <chrono>
#include <string>

#include "Trouble.h"

namespace tool {

/// What an instrument meant by an answer.
enum class Meaning {
    Weight,           ///< a weight in grams
    Overload,         ///< more on the pan than it can weigh
    Underload,        ///< less than it can weigh: pan off, or below zero's range
    NotStable,        ///< no stable weight in time, or busy with a command
    Calibrating,      ///< calibration, adjustment, initial test, taring
    Standby,          ///< switched off or displaying something else
    InstrumentError,  ///< an error code, a command refused
    OtherUnit,        ///< a weight, but not in grams
    Truncated,        ///< a weight with more places than the driver takes
    NotUnderstood,    ///< no form that the instrument is known to send
    Silence           ///< nothing
};

enum class Stability { Unknown, Stable, Dynamic };

/// One answer, read for what it means.
struct Reading {
    Meaning meaning = Meaning::NotUnderstood;
    Stability stability = Stability::Unknown;
    std::string digits;  ///< the number as received, sign included and blanks left out: "-12.340"
    std::string unit;    ///< as received: "g", "G", "kg"; empty where the answer has none
    std::string remark;  ///< one more fact for people, such as the instrument's error text

    bool askedAtOnce = false;  ///< whether a weight of the moving pan would have been taken, too

    /// The number that `digits` shows; 0 without one.
    double Value() const;
    /// How many digits `digits` has behind the point.
    int Decimals() const;
    /// Whether this is a weight in grams that can be relied on.
    bool IsWeight() const { return meaning == Meaning::Weight; }
};

/// A word for programs: "weight", "overload", "not-stable".
std::string WordFor(Meaning meaning);
/// "stable", "dynamic" or "unknown".
std::string WordFor(Stability stability);
/// Of a weight Trouble::None.
Trouble TroubleOf(Meaning meaning);
/// A sentence for people about a reading that is no weight, with what to do.
std::string SentenceFor(const Reading& reading);

}  // namespace tool
