#pragma once

#include <memory>
#include <string>
#include <vector>

#include "LiveDisplay.h"
#include "LogFile.h"
#include "MonitoredBalance.h"

namespace tool {

/// Reads balances until it is interrupted or has enough, and tells about it: lines or the live
/// display on standard output, lines in the log, and a summary on standard error.
class Monitor {
 public:
    struct Settings {
        std::vector<MonitoredBalance::Settings> balances;
        Format format = Formats().front();
        bool live = false;    ///< the live display instead of lines
        bool trace = false;   ///< the library's trace on standard error
        std::string logPath;  ///< empty: no log
        int count = 0;        ///< readings of each balance after which it ends; 0: no end
        std::chrono::milliseconds duration{0};  ///< after which it ends; 0: no end
        bool countsDynamic = false;             ///< in the statistics, too
    };

    explicit Monitor(const Settings& settings);
    void Run();

 private:
    MonitoredBalance::Listener ListenerFor(std::size_t index);
    void TakeReading(std::size_t index, const Measurement& measurement);
    void TakeNotice(std::size_t index, const std::string& status, const std::string& message,
                    WallTime time);
    void Tell(const LabelledMeasurement& measurement);
    void ReadOn();
    void Wait();
    bool HasEnough() const;
    void Summarize() const;

    struct Tally {
        int readings = 0;
        int lost = 0;
    };

    const Settings settings_;
    const MonitoredBalance::Clock::time_point start_ = MonitoredBalance::Clock::now();
    std::vector<std::unique_ptr<MonitoredBalance>> balances_;
    std::vector<DisplayedBalance> displayed_;
    std::vector<Tally> tallies_;
    std::unique_ptr<LogFile> log_;
    std::unique_ptr<LiveDisplay> display_;
};

}  // namespace tool
