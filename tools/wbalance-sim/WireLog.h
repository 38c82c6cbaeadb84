#pragma once

#include <mutex>
#include <string>

#include "simulator/ConnectedInstrument.h"

/// Writes what goes over a line, one event to a line: seconds, direction, bytes, and the host's
/// line settings where it is the host that sends.
///
///       0.012 > "@\r\n" 2400,7E1
///       0.013 < "I4 A \"1126493049\"\r\n"
///
/// With several instruments the device stands behind the time. Used from any thread. Nothing is
/// kept in memory; the file grows with what is said, and may be emptied meanwhile.
class WireLog {
 public:
    /// `file` is written anew; "-" is standard error. Throws std::runtime_error when it cannot be.
    WireLog(const std::string& file, bool ofSeveral);
    ~WireLog();
    WireLog(const WireLog&) = delete;
    WireLog& operator=(const WireLog&) = delete;

    /// Throws std::runtime_error when something of what was written did not get into the file.
    void requireWhole();

    /// What can't be written, because the disk is full for example, is missing: that is said on
    /// standard error when it begins, and in the log when it is over.
    void write(const std::string& device, const simulator::LineEvent& event);

 private:
    void tellMissing();
    void miss(int error);
    int writeWhole(const std::string& text);

    std::mutex mutex_;
    const std::string path_;
    const int descriptor_;
    const bool namesDevices_;
    std::size_t missing_ = 0;     ///< events since the last that was written
    std::size_t allMissing_ = 0;  ///< events since the beginning
    bool isInLine_ = false;       ///< the last line was cut off
};
