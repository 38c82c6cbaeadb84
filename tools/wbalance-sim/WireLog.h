#pragma once

#include <fstream>
#include <mutex>
#include <ostream>
#include <string>

#include "simulator/ConnectedInstrument.h"

/// Writes what goes over a line, one event to a line: seconds, direction, bytes, and the host's
/// line settings where it is the host that sends.
///
///       0.012 > "@\r\n" 2400,7E1
///       0.013 < "I4 A \"1126493049\"\r\n"
///
/// With several instruments the device stands behind the time. Used from any thread.
class WireLog {
 public:
    /// `file` is written anew; "-" is standard error. Throws std::runtime_error when it cannot be.
    WireLog(const std::string& file, bool ofSeveral);

    /// Throws std::runtime_error when something of what was written did not get into the file.
    void requireWhole();

    void write(const std::string& device, const simulator::LineEvent& event);

 private:
    std::mutex mutex_;
    const std::string path_;
    std::ofstream file_;
    std::ostream& out_;
    bool namesDevices_;
};
