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

/// The time until the first deadline, in the form that ppoll takes; null without a deadline.
const timespec* timeLeft(const std::vector<ConnectedInstrument*>& served, timespec* left) {
    std::optional<ConnectedInstrument::Clock::time_point> first;
    for (ConnectedInstrument* instrument : served) {
        const auto deadline = instrument->deadline();
        if (deadline && (!first || *deadline < *first)) first = deadline;
    }
    if (!first) return nullptr;
    const auto wait = std::max(*first - ConnectedInstrument::Clock::now(),
                               ConnectedInstrument::Clock::duration(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
    left->tv_sec = seconds.count();
    left->tv_nsec = std::chrono::nanoseconds(wait - seconds).count();
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
    instruments_.clear();
    ::close(wakeUp_);
    ::unsetenv(virtualLinesVariable);
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

ConnectedInstrument& VirtualBench::place(const std::string& instrument, const Options& options) {
    const CatalogEntry& entry = findInstrument(instrument);
    return add(std::make_unique<ConnectedInstrument>(
        entry, options, std::make_unique<VirtualLine>(directory_, options.device)));
}

ConnectedInstrument& VirtualBench::placeOnTerminal(const std::string& instrument,
                                                   const Options& options) {
    const CatalogEntry& entry = findInstrument(instrument);
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
    while (!stopping_) {
        const auto served = instruments();
        waitForWork(served);
        for (ConnectedInstrument* instrument : served)
            instrument->serve();
    }
}

void VirtualBench::waitForWork(const std::vector<ConnectedInstrument*>& served) const {
    std::vector<pollfd> polled = {{wakeUp_, POLLIN, 0}};
    for (ConnectedInstrument* instrument : served)
        for (const int descriptor : instrument->descriptors())
            polled.push_back({descriptor, POLLIN, 0});
    timespec left = {};
    ::ppoll(polled.data(), polled.size(), timeLeft(served, &left), nullptr);
    eventfd_t wakes = 0;
    ::eventfd_read(wakeUp_, &wakes);
}

}  // namespace simulator
