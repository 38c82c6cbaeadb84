#include "simulator/VirtualBench.h"

#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "simulator/line/PlainTerminal.h"
#include "simulator/line/VirtualLine.h"

namespace simulator {
namespace {

/// Opening a port makes and removes a lock file, which takes milliseconds on some disks.
constexpr char inMemory[] = "/dev/shm";

std::filesystem::path createDirectory() {
    std::string name = (VirtualBench::placeOfBenches() / "wbalance-lines-XXXXXX").string();
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

}  // namespace

std::filesystem::path VirtualBench::placeOfBenches() {
    if (!::getenv("TMPDIR") && ::access(inMemory, R_OK | W_OK | X_OK) == 0) return inMemory;
    return std::filesystem::temp_directory_path();
}

VirtualBench::VirtualBench() : directory_(createDirectory()) {
    ::setenv(virtualLinesVariable, directory_.c_str(), 1);
    thread_ = startWithoutSignals([this] { serveUntilStopped(); });
}

VirtualBench::~VirtualBench() {
    stopping_ = true;
    ready_.wake();
    thread_.join();
    for (const auto& instrument : instruments_)
        instrument->serve();  // what a host has sent at the very end
    instruments_.clear();
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
    ConnectedInstrument& added = *instrument;
    added.onChange([this, &added] { noteChange(added); });
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        instruments_.push_back(std::move(instrument));
    }
    noteChange(added);
    return added;
}

std::vector<ConnectedInstrument*> VirtualBench::instruments() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<ConnectedInstrument*> all;
    for (const auto& instrument : instruments_)
        all.push_back(instrument.get());
    return all;
}

void VirtualBench::noteChange(ConnectedInstrument& instrument) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        changed_.insert(&instrument);
    }
    ready_.wake();
}

std::set<ConnectedInstrument*> VirtualBench::takeChanged() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(changed_, {});
}

void VirtualBench::serveUntilStopped() {
    while (!stopping_) {
        for (ConnectedInstrument* instrument : takeChanged())
            ready_.watch(*instrument);
        for (ConnectedInstrument* instrument : ready_.wait()) {
            instrument->serve();
            ready_.watch(*instrument);
        }
    }
}

}  // namespace simulator
