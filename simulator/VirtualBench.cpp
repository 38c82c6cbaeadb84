#include "simulator/VirtualBench.h"

#include <utility>

#include "simulator/HeldSignals.h"
#include "simulator/line/PlainTerminal.h"
#include "simulator/line/VirtualLine.h"

namespace simulator {

VirtualBench::VirtualBench() {
    const HeldSignals held;
    thread_ = std::thread([this] { ServeUntilStopped(); });
}

VirtualBench::~VirtualBench() {
    stopping_ = true;
    ready_.Wake();
    thread_.join();
    for (const auto& instrument : instruments_)
        instrument->Serve();  // what a host has sent at the very end
    instruments_.clear();
}

ConnectedInstrument& VirtualBench::Place(const std::string& instrument, const Options& options) {
    return Place(FindInstrument(instrument), options);
}

ConnectedInstrument& VirtualBench::Place(const CatalogEntry& entry, const Options& options) {
    return Add(std::make_unique<ConnectedInstrument>(
        entry, options,
        std::make_unique<VirtualLine>(Directory(), options.device,
                                      options.pace.value_or(Adapter()).Usb())));
}

ConnectedInstrument& VirtualBench::PlaceOnTerminal(const std::string& instrument,
                                                   const Options& options) {
    return PlaceOnTerminal(FindInstrument(instrument), options);
}

ConnectedInstrument& VirtualBench::PlaceOnTerminal(const CatalogEntry& entry,
                                                   const Options& options) {
    return Add(std::make_unique<ConnectedInstrument>(
        entry, options, std::make_unique<PlainTerminal>(options.line.value_or(entry.line))));
}

ConnectedInstrument& VirtualBench::Add(std::unique_ptr<ConnectedInstrument> instrument) {
    ConnectedInstrument& added = *instrument;
    added.OnChange([this, &added] { NoteChange(added); });
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        instruments_.push_back(std::move(instrument));
    }
    NoteChange(added);
    return added;
}

std::vector<ConnectedInstrument*> VirtualBench::Instruments() {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<ConnectedInstrument*> all;
    for (const auto& instrument : instruments_)
        all.push_back(instrument.get());
    return all;
}

void VirtualBench::NoteChange(ConnectedInstrument& instrument) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        changed_.insert(&instrument);
    }
    ready_.Wake();
}

std::set<ConnectedInstrument*> VirtualBench::TakeChanged() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(changed_, {});
}

void VirtualBench::ServeUntilStopped() {
    while (!stopping_) {
        for (ConnectedInstrument* instrument : TakeChanged())
            ready_.Watch(*instrument);
        for (ConnectedInstrument* instrument : ready_.Wait()) {
            instrument->Serve();
            ready_.Watch(*instrument);
        }
    }
}

}  // namespace simulator
