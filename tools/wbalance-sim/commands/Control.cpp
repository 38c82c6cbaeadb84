#include "Control.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "Arguments.h"
#include "ExampleInstruments.h"
#include "control/ControlRequest.h"
#include "control/ControlServer.h"
#include "simulator/BenchDirectory.h"
#include "simulator/line/VirtualLineState.h"

namespace {

namespace fs = std::filesystem;

const char* const kDescription =
    "Changes the instruments of a running wbalance-sim, or shows their state.";

const char* const kExamples =
    "CHANGE is one of\n"
    "  status                                       what runs, and what it shows\n"
    "  load GRAMS                                   the load on the pan\n"
    "  noise GRAMS, drift GRAMS-PER-HOUR            noise and drift of a reading\n"
    "  switch NAME=VALUE                            a switch, as with --with\n"
    "  fault NAME[=VALUE] [at START] [for DURATION] a fault; its times count from now\n"
    "  end [NAME]                                   ends the faults in force\n"
    "  unplug [for DURATION] [as DEVICE]            the adapter is pulled out\n"
    "  plug-in [as DEVICE]                          the adapter is back; prints its path\n"
    "  press print, press tare, press zero          someone presses a key\n"
    "Examples:\n"
    "  wbalance-sim control load 100\n"
    "  wbalance-sim control --port ttyUSB1 fault silent for 2s\n"
    "  wbalance-sim control --control /run/user/1000/bench status\n"
    "Without --control, the command reaches the wbalance-sim inside which it runs, or else the "
    "only\n"
    "one of this user. Exit code: 0, or 125 if the change could not be made.";

/// The sockets of this user's benches that somebody serves.
std::vector<fs::path> RunningBenches() {
    std::vector<fs::path> found;
    for (const auto& directory : simulator::BenchDirectory::All()) {
        const fs::path socket = ControlServer::SocketIn(directory);
        if (Socket::ConnectTo(socket)) found.push_back(socket);
    }
    return found;
}

fs::path OnlyRunningBench() {
    const auto benches = RunningBenches();
    if (benches.empty())
        throw std::runtime_error(texts::WithExamples(
            "no wbalance-sim of yours is running; start one, such as wbalance-sim "
            "{balance} --pty"));
    if (benches.size() == 1) return benches.front();
    std::string paths;
    for (const auto& bench : benches)
        paths += "\n  --control " + bench.string();
    throw std::runtime_error("several wbalance-sim of yours are running; choose one:" + paths);
}

fs::path ChosenBench(const std::string& path) {
    if (!path.empty()) return path;
    const char* above = std::getenv(simulator::kVirtualLinesVariable);
    return above && *above ? ControlServer::SocketIn(above) : OnlyRunningBench();
}

std::string Ask(const fs::path& bench, const ControlRequest& request) {
    const auto socket = Socket::ConnectTo(bench);
    if (!socket)
        throw std::runtime_error("no wbalance-sim runs at " + bench.string() +
                                 "; start one with --control " + bench.string());
    socket->Send(request.Message());
    const auto answer = socket->Receive(std::chrono::seconds(10));
    if (!answer || answer->empty())
        throw std::runtime_error("the wbalance-sim at " + bench.string() + " gives no answer");
    if (answer->front() == '-') throw std::invalid_argument(answer->substr(1));
    return answer->substr(1);
}

std::string Joined(const std::vector<std::string>& words) {
    std::string all;
    for (const auto& word : words)
        all += (all.empty() ? "" : " ") + word;
    return all;
}

}  // namespace

int Control(std::vector<std::string> words) {
    std::string path;
    ControlRequest request;
    arguments::Grammar grammar{"wbalance-sim control", kDescription, kExamples};
    // The words of the change are no options, though they may begin with "-".
    grammar.prefixCommand = true;
    const auto declare = [&](arguments::Command command) {
        command.AddOption("--control", path, "The link of the run").TypeName("PATH");
        command.AddOption("--port", request.device, "The instrument's device, if there are several")
            .TypeName("DEVICE");
    };
    request.words = Joined(arguments::Parse(grammar, words, declare));
    if (request.words.empty())
        throw std::invalid_argument("what is to change? See wbalance-sim control --help");
    std::cout << Ask(ChosenBench(path), request);
    return EXIT_SUCCESS;
}
