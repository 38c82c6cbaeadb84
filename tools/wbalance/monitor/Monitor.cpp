#include "Monitor.h"

#include <algorithm>

#include "OutsideText.h"
#include "ToolError.h"
#include "output/Stream.h"
#include "process/Interrupt.h"
#include "process/Session.h"

namespace tool {
namespace {

using Clock = MonitoredBalance::Clock;

constexpr std::chrono::milliseconds kLongestWait{250};
constexpr std::chrono::seconds kAlwaysFresh{2};

std::string SummaryOf(const Statistics& statistics) {
    const std::string numbers = statistics.NumbersText(" g", ", ");
    return std::to_string(statistics.Count()) + " weights" + statistics.DynamicText() +
           (numbers.empty() ? "" : ", " + numbers);
}

}  // namespace

Monitor::Monitor(const Settings& settings)
    : settings_(settings),
      displayed_(settings.balances.size()),
      tallies_(settings.balances.size()) {
    if (!settings.logPath.empty()) {
        const Format& format = LogFormatFor(settings.format);
        log_ = std::make_unique<LogFile>(settings.logPath, format.header, format.lineBegins);
        TakeHangupsForTheLog();
    }
    for (std::size_t i = 0; i < settings.balances.size(); ++i) {
        balances_.push_back(
            std::make_unique<MonitoredBalance>(settings.balances[i], ListenerFor(i)));
        displayed_[i].name =
            outside::Printable(balances_[i]->Driver() + " " + balances_[i]->Port());
        displayed_[i].freshFor =
            std::max<Clock::duration>(kAlwaysFresh, 2 * settings.balances[i].interval);
        displayed_[i].statistics = Statistics(settings.countsDynamic);
    }
}

MonitoredBalance::Listener Monitor::ListenerFor(std::size_t index) {
    MonitoredBalance::Listener listener;
    listener.onReading = [this, index](const auto&, const Measurement& measurement) {
        TakeReading(index, measurement);
    };
    listener.onLost = [this, index](const auto&, const std::string& reason) {
        ++tallies_[index].lost;
        displayed_[index].lost = reason;
        TakeNotice(index, "lost", reason, std::chrono::system_clock::now());
    };
    listener.onBack = [this, index](const auto&, const std::string& device, WallTime time) {
        displayed_[index].lost.clear();
        TakeNotice(index, "back", "at " + device, time);
    };
    listener.onTrace = SinkFor(settings_.trace);
    return listener;
}

void Monitor::Run() {
    try {
        ReadOn();
    } catch (const ToolError& error) {
        // A reader that sleeps keeps nobody from the summary.
        if (error.code == ExitCode::Interrupted) Summarize();
        throw;
    }
    Summarize();
}

void Monitor::ReadOn() {
    if (!settings_.format.header.empty()) PrintLine(settings_.format.header);
    if (settings_.live) display_ = std::make_unique<LiveDisplay>();
    while (!Interrupted() && !HasEnough()) {
        for (const auto& balance : balances_)
            balance->Step(Clock::now());
        if (log_ && TakeHangup()) log_->FollowRotation();
        if (display_) display_->Draw(displayed_);
        Wait();
    }
    display_.reset();
}

void Monitor::Wait() {
    std::vector<pollfd> watched;
    Clock::time_point next = Clock::now() + kLongestWait;
    if (settings_.duration.count() > 0) next = std::min(next, start_ + settings_.duration);
    for (const auto& balance : balances_) {
        const auto more = balance->Watched();
        watched.insert(watched.end(), more.begin(), more.end());
        next = std::min(next, balance->NextStep());
    }
    Await(watched, std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()));
}

void Monitor::TakeReading(std::size_t index, const Measurement& measurement) {
    ++tallies_[index].readings;
    displayed_[index].reading = measurement.reading;
    displayed_[index].received = true;
    displayed_[index].receivedAt = Clock::now();
    if (measurement.reading.IsWeight())
        displayed_[index].statistics.Add(Clock::now() - start_, measurement.reading);
    Tell({balances_[index]->Driver(), balances_[index]->Port(), "", "", measurement});
}

void Monitor::TakeNotice(std::size_t index, const std::string& status, const std::string& message,
                         WallTime time) {
    Measurement nothing;
    nothing.time = time;
    Tell({balances_[index]->Driver(), balances_[index]->Port(), status, message, nothing});
}

// First the log, so that what was shown is never missing there.
void Monitor::Tell(const LabelledMeasurement& measurement) {
    if (log_) log_->Write(LogFormatFor(settings_.format).line(measurement));
    if (display_) return;
    PrintLine((settings_.format.IsForPeople()
                   ? TimeText(measurement.measurement.time) + "  " + measurement.driver + " " +
                         measurement.port + "  "
                   : "") +
              settings_.format.line(measurement));
}

bool Monitor::HasEnough() const {
    if (settings_.duration.count() > 0 && Clock::now() >= start_ + settings_.duration) return true;
    return settings_.count > 0 &&
           std::all_of(tallies_.begin(), tallies_.end(),
                       [this](const Tally& tally) { return tally.readings >= settings_.count; });
}

void Monitor::Summarize() const {
    for (std::size_t i = 0; i < displayed_.size(); ++i)
        SayLine(displayed_[i].name + ": " + std::to_string(tallies_[i].readings) + " readings, " +
                SummaryOf(displayed_[i].statistics) + ", lost " + std::to_string(tallies_[i].lost) +
                " times");
}

}  // namespace tool
