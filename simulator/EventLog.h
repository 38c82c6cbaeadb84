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
        Lost,            ///< bytes that the instrument sent while no host was there
        Overflow,        ///< bytes of either side that did not fit on the line
        Unplugged,
        PluggedIn,
        OtherSettings,  ///< the host uses wrong settings for the first time
        Trouble,        ///< something could not be done, and is tried again
    };

    Time time;  ///< since the instrument was set up
    Kind kind;
    /// For Unplugged and PluggedIn the device; for OtherSettings the instrument's settings; for
    /// Trouble a sentence.
    std::string bytes;
    UartSettings settings;  ///< the host's at that time
};

/// What has happened on a line: the last 10,000 events, or fewer if these have more than 1 MiB of
/// bytes. The limits are for runs that last for weeks.
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
