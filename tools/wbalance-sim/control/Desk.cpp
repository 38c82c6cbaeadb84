#include "Desk.h"

#include <stdexcept>

#include "simulator/Text.h"

using simulator::Change;
using simulator::ConnectedInstrument;
using simulator::VirtualBench;

namespace {

std::string described(ConnectedInstrument& instrument) {
    simulator::Reading reading;
    instrument.withBalance([&](simulator::BalanceModel& model) { reading = model.read(); });
    std::string faults;
    for (const auto& fault : instrument.faultsInForce())
        faults += (faults.empty() ? "; " : ", ") + fault;
    return instrument.device() + ": " + instrument.name() + " shows " + reading.digits() + " " +
           reading.unit + (reading.stable ? "" : ", not stable") + "; the host's port is " +
           (instrument.isOpenedByHost() ? "open" : "closed") + faults + "\n";
}

bool isAt(const std::string& device, ConnectedInstrument& instrument) {
    return device.empty() || device == instrument.device() ||
           "/dev/" + device == instrument.device();
}

std::vector<ConnectedInstrument*> meant(const std::string& device, VirtualBench& bench) {
    std::vector<ConnectedInstrument*> found;
    std::string all;
    for (ConnectedInstrument* each : bench.instruments()) {
        if (isAt(device, *each)) found.push_back(each);
        all += (all.empty() ? "" : ", ") + each->device() + " (" + each->name() + ")";
    }
    if (found.empty())
        throw std::invalid_argument("no instrument is at " + device + "; there are " + all);
    return found;
}

ConnectedInstrument& meantAlone(const std::string& device, VirtualBench& bench) {
    const auto found = meant(device, bench);
    if (found.size() == 1) return *found.front();
    std::string all;
    for (ConnectedInstrument* each : found)
        all += (all.empty() ? "" : ", ") + each->device() + " (" + each->name() + ")";
    throw std::invalid_argument("which instrument? Choose one with --port: " + all);
}

}  // namespace

Request Request::ofMessage(const std::string& message) {
    const auto [device, words] = simulator::cutAt(message, '\n');
    return {device, words.value_or("")};
}

std::string carryOut(const Request& request, VirtualBench& bench) {
    if (request.words == "status") {
        std::string text;
        for (ConnectedInstrument* each : meant(request.device, bench))
            text += described(*each);
        return text;
    }
    const Change change = Change::parse(request.words);
    ConnectedInstrument& instrument = meantAlone(request.device, bench);
    instrument.apply(change);
    return change.kind == Change::Kind::plugIn ? instrument.device() + "\n" : "";
}
