#pragma once

#include <ctime>
#include <string>

#include "simulator/Time.h"

namespace simulator {

/// The clock of an instrument. All instruments begin at the same day; the clock runs in virtual
/// time.
class Calendar {
 public:
    std::string DateText(Time now) const { return Text("%d %m %Y", now); }  ///< "22 11 2026"
    std::string TimeText(Time now) const { return Text("%H %M %S", now); }  ///< "09 56 11"

    /// Sets date or time from a text of the same form. For another text it returns false and
    /// changes nothing.
    bool SetDate(const std::string& date, Time now) { return Set("%d %m %Y", date, now); }
    bool SetTime(const std::string& time, Time now) { return Set("%H %M %S", time, now); }

 private:
    std::string Text(const char* format, Time now) const;
    bool Set(const char* format, const std::string& text, Time now);
    std::tm At(Time now) const;

    std::time_t begin_ = 1'767'254'400;  ///< 1 January 2026, 8 o'clock
};

}  // namespace simulator
