#include "MonitoredBalance.h"

#include <sys/stat.h>

#include <algorithm>
#include <new>

#include "ToolError.h"
#include "line/PortTrouble.h"
#include "process/PortCheck.h"

namespace tool {
namespace {

constexpr std::chrono::milliseconds kLook{250};  // between two looks whether the port is there
// Between two tries to find a lost balance: as its readings are, but within these.
constexpr std::chrono::milliseconds kShortestRetry{1000};
constexpr std::chrono::milliseconds kLongestRetry{5000};

bool IsThere(const std::string& device) {
    struct stat node {};
    return stat(device.c_str(), &node) == 0;
}

}  // namespace

MonitoredBalance::MonitoredBalance(Settings settings, Listener listener)
    : settings_(std::move(settings)), listener_(std::move(listener)) {}

std::vector<pollfd> MonitoredBalance::Watched() const {
    return process_ ? process_->Watched() : std::vector<pollfd>();
}

void MonitoredBalance::Step(Clock::time_point now) {
    std::optional<Measurement> measurement;
    try {
        measurement = Advance(now);
    } catch (const ToolError& error) {
        Lose(error.what(), now);
    } catch (const std::bad_alloc&) {
        Lose("the memory does not suffice for this balance now", now);
    }
    // Outside: what fails in the listener, such as a full disk, is no loss of the balance.
    if (measurement) Deliver(*measurement);
}

std::optional<Measurement> MonitoredBalance::Advance(Clock::time_point now) {
    if (process_) process_->Serve();
    // Also between two readings: a process may be killed while it waits for the next request.
    if (process_ && process_->HasReport()) return Conclude(now);
    if (process_ && process_->IsBusy())
        Watch(now);
    else if (now >= next_)
        Begin(now);
    return std::nullopt;
}

void MonitoredBalance::Begin(Clock::time_point now) {
    if (!process_) Connect();
    Request request;
    request.mode = settings_.mode;
    process_->Start(request);
    next_ = now + kLook;
}

void MonitoredBalance::Connect() {
    connection_ = {settings_.driver, settings_.port.Resolve(), settings_.line,
                   settings_.timeoutSeconds};
    wasThere_ = IsThere(connection_.port.Device());
    process_ = std::make_unique<BalanceProcess>(connection_, listener_.onTrace);
}

// Without its device a reading goes on for its whole time, with nothing to wait for.
void MonitoredBalance::Watch(Clock::time_point now) {
    RequireDevice();
    next_ = now + kLook;
}

void MonitoredBalance::RequireDevice() const {
    const std::string device = connection_.port.Device();
    if (IsThere(device)) return;
    if (!wasThere_) throw ToolError(WhyNotOpened(device));
    const bool stable = settings_.port.Text() != device;
    throw ToolError(ExitCode::PortFailed,
                    device + " has gone" +
                        (stable ? ""
                                : "; if it comes back under another number, only its stable name "
                                  "leads to it (`wbalance ports`)"));
}

Measurement MonitoredBalance::Conclude(Clock::time_point now) {
    const Report report = process_->TakeReport();
    RequirePort(connection_, report);
    const Measurement measurement = Measure(*settings_.driver, report);
    if (measurement.reading.meaning == Meaning::Silence) {
        RequireDevice();
        throw ToolError(ExitCode::Silent, SentenceFor(measurement.reading));
    }
    next_ = due_ = NextStart(now);
    return measurement;
}

// Starts that a slow reading has missed are left out, not made up for.
MonitoredBalance::Clock::time_point MonitoredBalance::NextStart(Clock::time_point now) const {
    if (settings_.interval.count() == 0) return now;
    const auto missed = (now - due_) / settings_.interval;
    return due_ + (missed + 1) * settings_.interval;
}

void MonitoredBalance::Deliver(const Measurement& measurement) {
    if (lost_) {
        lost_ = false;
        listener_.onBack(*this, connection_.port.Device(), measurement.time);
    }
    listener_.onReading(*this, measurement);
}

void MonitoredBalance::Lose(const std::string& reason, Clock::time_point now) {
    // A port that was pulled and put back stays dead for who had it open: open it anew.
    process_.reset();
    next_ = now + std::clamp(settings_.interval, kShortestRetry, kLongestRetry);
    if (lost_) return;
    lost_ = true;
    listener_.onLost(*this, reason);
}

}  // namespace tool
