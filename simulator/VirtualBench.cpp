#include "simulator/VirtualBench.h"

#include <utility>

#include "simulator/HeldSignals.h"
#include "simulator/line/PlainTerminal.h"
#include "simulator/line/VirtualLine.h"

namespace simulator {

VirtualBench::VirtualBench() {
    const HeldSignals held;
    thread_ = std::thread([this] { serveUntilStopped(); });
}

VirtualBench::~VirtualBench() {
    stopping_ = true;
    ready_.wake();
    thread_.join();
    for (const auto& instrument : instruments_)
        instrument->serve();  // what a host has sent at the very end
    instruments_.clear();
}

ConnectedInstrument& VirtualBench::place(const std::string& instrument, const Options& options) {
    return place(findInstrument(instrument), options);
}

ConnectedInstrument& VirtualBench::place(const CatalogEntry& entry, const Options& options) {
    return add(std::make_unique<ConnectedInstrument>(
        entry, options, std::make_unique<VirtualLine>(directory(), options.device)));
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
