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
/// With several instruments each line has the device after the time, and the file can't be
/// replayed. May be used from any thread. A separate thread writes the file, so nobody waits for a
/// slow disk or for a pipe that is not read. At most 1 MiB waits to be written. Other programs may
/// empty the file meanwhile.
class WireLog {
 public:
    /// `file` is written anew; "-" is standard error. Throws std::runtime_error when it cannot be.
    explicit WireLog(const std::string& file);
    ~WireLog();  ///< waits until all is written
    WireLog(const WireLog&) = delete;
    WireLog& operator=(const WireLog&) = delete;

    /// Writes the header. Call it when all instruments are placed, before any event. It counts as
    /// an event if it could not be written.
    void Begin(const std::vector<simulator::ConnectedInstrument*>& instruments);

    /// Waits until all is written, or could not be.
    void WaitUntilWritten();

    /// The same; throws std::runtime_error when an event did not get into the file.
    void RequireWhole();

    /// Never waits. An event that does not fit into the 1 MiB is left out, and the log says so in
    /// its place. An event that can't be written, for example because the disk is full, is left out
    /// as well; then standard error says so, too.
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
