// One simulated instrument on standard input and output, in real time, for as long as there is
// input: machine-instrument NAME GRAMS [SWITCH=VALUE]...

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "simulator/Catalog.h"
#include "simulator/Instrument.h"

namespace {

using simulator::Instrument;
using simulator::Time;

class Clock {
 public:
    Time Now() const {
        return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now() - start_);
    }

 private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// How long poll may wait before the instrument wants to be called; -1 for ever.
int Patience(const Instrument& instrument, Time now) {
    const auto next = instrument.NextEvent();
    return next ? static_cast<int>(std::max(*next - now, Time{1}).count()) : -1;
}

void Serve(Instrument& instrument) {
    const Clock clock;
    while (true) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        poll(&input, 1, Patience(instrument, clock.Now()));
        instrument.Advance(clock.Now());
        if (input.revents != 0) {
            char bytes[256];
            const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
            if (count <= 0) return;
            instrument.Receive(std::string(bytes, static_cast<std::size_t>(count)), clock.Now());
        }
        const std::string answer = instrument.TakeOutput();
        if (write(STDOUT_FILENO, answer.data(), answer.size()) < 0) return;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: machine-instrument NAME GRAMS [SWITCH=VALUE]...\n", stderr);
        return 2;
    }
    try {
        Instrument instrument(simulator::FindInstrument(argv[1]),
                              std::vector<std::string>(argv + 3, argv + argc));
        instrument.Balance().StartWithLoad(std::stod(argv[2]));
        Serve(instrument);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "machine-instrument: %s\n", problem.what());
        return 2;
    }
    return 0;
}
