#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "simulator/ConnectedInstrument.h"

/// Writes what goes over the lines of a run, as a record (tools/common/Record.h): bytes of both
/// directions, what else happens, and as a comment the host's line settings whenever it sends at
/// others than before.
///
///     # host: 2400,7E1
///     12 > @\r\n
///     13 < I4 A "1126493049"\r\n
///
/// With several instruments the device stands behind the time, and no record can be read from it.
/// Used from any thread. A thread of its own writes, so that nobody waits for a slow disk or a pipe
/// whose reader sleeps; 1 MiB at most waits to be written. The file grows with what is said, and
/// may be emptied meanwhile.
class WireLog {
 public:
    /// `file` is written anew; "-" is standard error. Throws std::runtime_error when it cannot be.
    explicit WireLog(const std::string& file);
    ~WireLog();  ///< waits until all is written
    WireLog(const WireLog&) = delete;
    WireLog& operator=(const WireLog&) = delete;

    /// The instruments are in their places: the header, before any event. It is the first of the
    /// events that are counted where they are missing.
    void Begin(const std::vector<simulator::ConnectedInstrument*>& instruments);

    /// Waits until all is written, or could not be.
    void WaitUntilWritten();

    /// The same; throws std::runtime_error when an event did not get into the file.
    void RequireWhole();

    /// Never waits. An event for which 1 MiB has no room is missing, which the log says in its
    /// place. So is one that can't be written, because the disk is full for example: that is said
    /// on standard error when it begins, too.
    void Write(const std::string& device, const simulator::LineEvent& event);

 private:
    struct Line {
        simulator::Time time;
        std::string text;
        std::size_t missingBefore;  ///< events for which there was no room
    };

    std::string SettingsComment(const std::string& device, const simulator::LineEvent& event) const;
    bool WriteLater(simulator::Time time, std::string text);
    void WriteUntilStopped();
    void Put(const Line& line);
    void TellMissing(simulator::Time time);
    void Miss(int error);
    int WriteWhole(const std::string& text);

    const std::string path_;
    const int descriptor_;
    bool namesDevices_ = false;

    std::mutex mutex_;  ///< of what waits
    std::condition_variable changed_;
    std::deque<Line> waiting_;  ///< the first is being written
    std::size_t waitingBytes_ = 0;
    std::size_t withoutRoom_ = 0;                      ///< events since the last that waits
    simulator::Time last_{0};                          ///< when the last event happened
    std::map<std::string, std::string> hostSettings_;  ///< that the log has, of each device
    bool stopping_ = false;

    std::size_t missing_ = 0;                 ///< events since the last that was written
    bool isInLine_ = false;                   ///< the last line was cut off
    std::atomic<std::size_t> allMissing_{0};  ///< events since the beginning
    std::thread writer_;
};
