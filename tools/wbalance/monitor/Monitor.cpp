#include "Monitor.h"

#include <algorithm>
#include <cstdio>

#include "ToolError.h"
#include "process/Interrupt.h"
#include "process/Session.h"

namespace tool {
namespace {

using Clock = MonitoredBalance::Clock;

constexpr std::chrono::milliseconds kLongestWait{250};

// A line of the log is for programs; it is JSON when the output is.
Format LogFormat(Format format) {
    return format == Format::Json ? Format::Json : Format::Csv;
}

void Deliver() {
    // A terminal is written to line by line, so that an earlier write may have failed.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw ToolError(ExitCode::Internal, "standard output can't be written");
}

void Print(const std::string& line) {
    std::puts(line.c_str());
    Deliver();
}

}  // namespace

Monitor::Monitor(const Settings& settings)
    : settings_(settings),
      displayed_(settings.balances.size()),
      tallies_(settings.balances.size()) {
    if (!settings.logPath.empty()) {
        const bool csv = LogFormat(settings.format) == Format::Csv;
        log_ = std::make_unique<LogFile>(settings.logPath, csv ? CsvHeader() : "");
    }
    for (std::size_t i = 0; i < settings.balances.size(); ++i) {
        balances_.push_back(
            std::make_unique<MonitoredBalance>(settings.balances[i], ListenerFor(i)));
        displayed_[i].name = balances_[i]->Driver() + " " + balances_[i]->Port();
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
        TakeNotice(index, "lost", reason);
    };
    listener.onBack = [this, index](const auto&, const std::string& device) {
        displayed_[index].lost.clear();
        TakeNotice(index, "back", "at " + device);
    };
    listener.onTrace = SinkFor(settings_.trace);
    return listener;
}

void Monitor::Run() {
    if (settings_.format == Format::Csv) Print(CsvHeader());
    if (settings_.live) display_ = std::make_unique<LiveDisplay>();
    while (!Interrupted() && !HasEnough()) {
        for (const auto& balance : balances_)
            balance->Step(Clock::now());
        if (display_) {
            display_->Draw(displayed_);
            Deliver();
        }
        Wait();
    }
    display_.reset();
    Summarize();
}

void Monitor::Wait() {
    std::vector<pollfd> watched;
    Clock::time_point next = Clock::now() + kLongestWait;
    for (const auto& balance : balances_) {
        const auto more = balance->Watched();
        watched.insert(watched.end(), more.begin(), more.end());
        next = std::min(next, balance->NextStep());
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
    poll(watched.data(), watched.size(), static_cast<int>(std::max<long>(wait, 0)));
}

void Monitor::TakeReading(std::size_t index, const Measurement& measurement) {
    ++tallies_[index].readings;
    displayed_[index].reading = measurement.reading;
    displayed_[index].received = true;
    if (measurement.reading.IsWeight())
        displayed_[index].statistics.Add(Clock::now() - start_, measurement.reading.Value());
    Tell({balances_[index]->Driver(), balances_[index]->Port(), "", "", measurement});
}

void Monitor::TakeNotice(std::size_t index, const std::string& status, const std::string& message) {
    Measurement nothing;
    nothing.time = std::chrono::system_clock::now();
    Tell({balances_[index]->Driver(), balances_[index]->Port(), status, message, nothing});
}

// First the log, so that what was shown is never missing there.
void Monitor::Tell(const LabelledMeasurement& measurement) {
    if (log_) log_->Write(Formatted(measurement, LogFormat(settings_.format)));
    if (display_) return;
    const bool plain = settings_.format == Format::Text;
    Print((plain ? TimeText(measurement.measurement.time) + "  " + measurement.driver + " " +
                       measurement.port + "  "
                 : "") +
          Formatted(measurement, settings_.format));
}

bool Monitor::HasEnough() const {
    return settings_.count > 0 &&
           std::all_of(tallies_.begin(), tallies_.end(),
                       [this](const Tally& tally) { return tally.readings >= settings_.count; });
}

void Monitor::Summarize() const {
    for (std::size_t i = 0; i < displayed_.size(); ++i) {
        const Statistics& statistics = displayed_[i].statistics;
        std::fprintf(stderr, "%s: %d readings, %d weights", displayed_[i].name.c_str(),
                     tallies_[i].readings, statistics.Count());
        if (statistics.Count() > 0) {
            std::fprintf(stderr, ", min %.6g, max %.6g, mean %.8g g, drift %+.3g g/min",
                         statistics.Minimum(), statistics.Maximum(), statistics.Mean(),
                         statistics.Drift());
        }
        std::fprintf(stderr, ", lost %d times\n", tallies_[i].lost);
    }
}

}  // namespace tool
