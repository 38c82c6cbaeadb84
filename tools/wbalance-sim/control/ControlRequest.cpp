#include "ControlRequest.h"

#include <stdexcept>

#include "simulator/Text.h"

using simulator::Change;
using simulator::ConnectedInstrument;
using simulator::VirtualBench;

namespace {

std::string Described(ConnectedInstrument& instrument) {
    simulator::Indication indication;
    instrument.WithBalance([&](simulator::BalanceModel& model) { indication = model.Read(); });
    std::string faults;
    for (const auto& fault : instrument.FaultsInForce())
        faults += (faults.empty() ? "; " : ", ") + fault;
    return instrument.Device() + ": " + instrument.Name() + " shows " + indication.Digits() + " " +
           indication.unit + (indication.stable ? "" : ", not stable") + "; the host's port is " +
           (instrument.IsOpenedByHost() ? "open" : "closed") + faults + "\n";
}

bool IsAt(const std::string& device, ConnectedInstrument& instrument) {
    return device.empty() || device == instrument.Device() ||
           "/dev/" + device == instrument.Device();
}

std::vector<ConnectedInstrument*> Meant(const std::string& device, VirtualBench& bench) {
    std::vector<ConnectedInstrument*> found;
    std::string all;
    for (ConnectedInstrument* each : bench.Instruments()) {
        if (IsAt(device, *each)) found.push_back(each);
        all += (all.empty() ? "" : ", ") + each->Device() + " (" + each->Name() + ")";
    }
    if (found.empty())
        throw std::invalid_argument("no instrument is at " + device + "; there are " + all);
    return found;
}

ConnectedInstrument& MeantAlone(const std::string& device, VirtualBench& bench) {
    const auto found = Meant(device, bench);
    if (found.size() == 1) return *found.front();
    std::string all;
    for (ConnectedInstrument* each : found)
        all += (all.empty() ? "" : ", ") + each->Device() + " (" + each->Name() + ")";
    throw std::invalid_argument("which instrument? Choose one with --port: " + all);
}

}  // namespace

ControlRequest ControlRequest::OfMessage(const std::string& message) {
    const auto [device, words] = simulator::CutAt(message, '\n');
    return {device, words.value_or("")};
}

std::string CarryOut(const ControlRequest& request, VirtualBench& bench) {
    if (request.words == "status") {
        std::string text;
        for (ConnectedInstrument* each : Meant(request.device, bench))
            text += Described(*each);
        return text;
    }
    const Change change = Change::Parse(request.words);
    ConnectedInstrument& instrument = MeantAlone(request.device, bench);
    instrument.Apply(change);
    return change.kind == Change::Kind::PlugIn ? instrument.Device() + "\n" : "";
}
