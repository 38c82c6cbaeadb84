#include "simulator/VirtualBench.h"

#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "simulator/line/PlainTerminal.h"
#include "simulator/line/VirtualLine.h"

namespace simulator {
namespace {

std::filesystem::path createDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "wbalance-lines-XXXXXX").string();
    if (!::mkdtemp(name.data()))
        throw std::system_error(errno, std::generic_category(), "cannot create " + name);
    return name;
}

/// Signals are for the thread that owns the bench.
std::thread startWithoutSignals(const std::function<void()>& work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(work);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

/// The time left until `deadline`, none once it has passed.
timespec timeUntil(ConnectedInstrument::Clock::time_point deadline) {
    const auto wait = std::max(deadline - ConnectedInstrument::Clock::now(),
                               ConnectedInstrument::Clock::duration(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
    timespec left = {};
    left.tv_sec = seconds.count();
    left.tv_nsec = std::chrono::nanoseconds(wait - seconds).count();
    return left;
}

}  // namespace

VirtualBench::VirtualBench()
    : directory_(createDirectory()), wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    ::setenv(virtualLinesVariable, directory_.c_str(), 1);
    thread_ = startWithoutSignals([this] { serveUntilStopped(); });
}

VirtualBench::~VirtualBench() {
    stopping_ = true;
    wake();
    thread_.join();
    for (const auto& instrument : instruments_)
        instrument->serve();  // what a host has sent at the very end
    instruments_.clear();
    ::close(wakeUp_);
    ::unsetenv(virtualLinesVariable);
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

ConnectedInstrument& VirtualBench::place(const std::string& instrument, const Options& options) {
    return place(findInstrument(instrument), options);
}

ConnectedInstrument& VirtualBench::place(const CatalogEntry& entry, const Options& options) {
    return add(std::make_unique<ConnectedInstrument>(
        entry, options, std::make_unique<VirtualLine>(directory_, options.device)));
}

ConnectedInstrument& VirtualBench::placeOnTerminal(const std::string& instrument,
                                                   const Options& options) {
    return placeOnTerminal(findInstrument(instrument), options);
}

ConnectedInstrument& VirtualBench::placeOnTerminal(const CatalogEntry& entry,
                                                   const Options& options) {
    return add(std::make_unique<ConnectedInstrument>(
        entry, options, std::make_unique<PlainTerminal>(options.line.value_or(entry.line))));
}

ConnectedInstrument& VirtualBench::add(std::unique_ptr<ConnectedInstrument> instrument) {
    instrument->onChange([this] { wake(); });
    const std::lock_guard<std::mutex> lock(mutex_);
    instruments_.push_back(std::move(instrument));
    wake();
    return *instruments_.back();
}

std::vector<ConnectedInstrument*> VirtualBench::instruments() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<ConnectedInstrument*> all;
    for (const auto& instrument : instruments_)
        all.push_back(instrument.get());
    return all;
}

void VirtualBench::wake() const {
    ::eventfd_write(wakeUp_, 1);
}

void VirtualBench::serveUntilStopped() {
    while (!stopping_)
        for (ConnectedInstrument* instrument : waitForWork())
            instrument->serve();
}

/// Sleeps until an instrument has something to do, and returns those that have: a bench of many
/// serves only the ones that are asked.
std::vector<ConnectedInstrument*> VirtualBench::waitForWork() {
    using TimePoint = ConnectedInstrument::Clock::time_point;
    const auto all = instruments();
    std::vector<pollfd> polled = {{wakeUp_, POLLIN, 0}};
    std::vector<std::size_t> polledUpTo;
    std::vector<TimePoint> deadlines;
    for (ConnectedInstrument* instrument : all) {
        for (const int descriptor : instrument->descriptors())
            polled.push_back({descriptor, POLLIN, 0});
        polledUpTo.push_back(polled.size());
        deadlines.push_back(instrument->deadline().value_or(TimePoint::max()));
    }
    const auto first = std::min_element(deadlines.begin(), deadlines.end());
    const bool isTimed = first != deadlines.end() && *first != TimePoint::max();
    const timespec left = isTimed ? timeUntil(*first) : timespec{};
    ::ppoll(polled.data(), polled.size(), isTimed ? &left : nullptr, nullptr);
    eventfd_t wakes = 0;
    ::eventfd_read(wakeUp_, &wakes);

    std::vector<ConnectedInstrument*> ready;
    const TimePoint now = ConnectedInstrument::Clock::now();
    std::size_t next = 1;
    for (std::size_t i = 0; i < all.size(); ++i) {
        bool isReady = deadlines[i] <= now;
        for (; next < polledUpTo[i]; ++next)
            isReady = isReady || polled[next].revents != 0;
        if (isReady) ready.push_back(all[i]);
    }
    return ready;
}

}  // namespace simulator
