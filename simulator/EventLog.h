#pragma once

#include <deque>
#include <string>
#include <vector>

#include "simulator/Time.h"
#include "simulator/line/UartSettings.h"

namespace simulator {

/// Something that happened on the line, for the log.
struct LineEvent {
    enum class Kind {
        FromHost,        ///< bytes as the host sent them
        FromInstrument,  ///< bytes as the instrument sent them
        Lost,            ///< bytes of the instrument that nobody listened to
        Overflow,        ///< bytes, of either side, for which the line had no more room
        Unplugged,
        PluggedIn,
        OtherSettings,  ///< the host speaks at settings that differ, which it has not done yet
        Trouble,        ///< something could not be done, and is tried again
    };

    Time time;  ///< since the instrument was set up
    Kind kind;
    /// Of Unplugged and PluggedIn the device, of OtherSettings the instrument's settings, of
    /// Trouble a sentence.
    std::string bytes;
    UartSettings settings;  ///< the host's at that time
};

/// What has happened on a line: the last 10,000 events, and of them not more than hold 1 MiB. That
/// is what is kept of a run that lasts for weeks.
class EventLog {
 public:
    const LineEvent& Add(const LineEvent& event);
    void Clear();
    std::vector<LineEvent> Events() const { return {events_.begin(), events_.end()}; }

 private:
    std::deque<LineEvent> events_;
    std::size_t bytes_ = 0;
};

}  // namespace simulator
