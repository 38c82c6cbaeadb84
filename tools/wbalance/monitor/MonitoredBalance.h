#pragma once

#include <poll.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "line/PortName.h"
#include "output/MeasurementFormat.h"
#include "process/BalanceProcess.h"

namespace tool {

/// One balance of several that are read over and over. It is lost when its port disappears or it
/// does not answer any more. It is then looked for until it is back; its stable name may lead to
/// another port by then.
///
/// Nothing waits: the owner polls Watched(), and calls Step() when something comes and at
/// NextStep().
class MonitoredBalance {
 public:
    using Clock = std::chrono::steady_clock;

    struct Settings {
        const DriverInfo* driver = nullptr;
        PortName port;
        LineSettings line;
        int timeoutSeconds = 1;
        long mode = 1;
        std::chrono::milliseconds interval{1000};  ///< between starts; 0: as fast as it gives
    };

    /// What there is to tell.
    struct Listener {
        /// A new answer, with any meaning. No answer is reported twice.
        std::function<void(const MonitoredBalance&, const Measurement&)> onReading;
        /// The balance has been lost, and why.
        std::function<void(const MonitoredBalance&, const std::string&)> onLost;
        /// The balance is back, at which device, and since when: the time of the reading that shows
        /// it.
        std::function<void(const MonitoredBalance&, const std::string&, WallTime)> onBack;
        BalanceProcess::TraceSink onTrace;
    };

    MonitoredBalance(Settings settings, Listener listener);

    std::vector<pollfd> Watched() const;
    Clock::time_point NextStep() const { return next_; }
    void Step(Clock::time_point now);

    /// As people know it.
    const std::string& Driver() const { return settings_.driver->name; }
    const std::string& Port() const { return settings_.port.Text(); }

 private:
    std::optional<Measurement> Advance(Clock::time_point now);
    void Begin(Clock::time_point now);
    void Connect();
    void Watch(Clock::time_point now);
    void RequireDevice() const;
    Measurement Conclude(Clock::time_point now);
    void Deliver(const Measurement& measurement);
    Clock::time_point NextStart(Clock::time_point now) const;
    void Lose(const std::string& reason, Clock::time_point now);

    const Settings settings_;
    const Listener listener_;
    Connection connection_;
    std::unique_ptr<BalanceProcess> process_;
    Clock::time_point next_ = Clock::now();
    Clock::time_point due_ = next_;  ///< when the last reading was to start
    bool wasThere_ = false;          ///< the device, when the process that talks to it began
    bool lost_ = false;
};

}  // namespace tool
