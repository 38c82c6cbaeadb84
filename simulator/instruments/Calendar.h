#pragma once

#include <ctime>
#include <string>

#include "simulator/Time.h"

namespace simulator {

/// The clock of an instrument, which begins at one day for all and goes on in virtual time.
class Calendar {
 public:
    std::string date(Time now) const { return text("%d %m %Y", now); }  ///< "22 11 2026"
    std::string time(Time now) const { return text("%H %M %S", now); }  ///< "09 56 11"

    /// Sets one of them from a text of the same form; false, and nothing changes, for another text.
    bool setDate(const std::string& date, Time now) { return set("%d %m %Y", date, now); }
    bool setTime(const std::string& time, Time now) { return set("%H %M %S", time, now); }

 private:
    std::string text(const char* format, Time now) const;
    bool set(const char* format, const std::string& text, Time now);
    std::tm at(Time now) const;

    std::time_t begin_ = 1'767'254'400;  ///< 1 January 2026, 8 o'clock
};

}  // namespace simulator
