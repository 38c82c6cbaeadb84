// Any settings, in any order: what is stored is what the next operation applies.

#include <wbalance/wbalance.h>

#include "Examples.h"
#include "Harness.h"
#include "Oracle.h"
#include "Tables.h"

using scripted::Line;

namespace {

int Code(fuzz::Input& input) {
    static const int kCodes[] = {0, 1, 2, 3, 4, 7, 8, 16, 1024, -1, 60, 61, 9600};
    const int choice = input.Below(14);
    return choice < 13 ? kCodes[choice] : input.Number();
}

/// Stores `value` when it is at least `least`; false ends the call.
bool Store(int value, int least, int& stored) {
    if (value < least) return false;
    stored = value;
    return true;
}

int Apply(faults::Settings& settings, const int (&codes)[6], char kind) {
    if (!Store(codes[0], 1, settings.baud)) return 0;
    if (!Store(codes[1], 0, settings.parity)) return 0;
    if (!Store(codes[2], 0, settings.dataBits)) return 0;
    if (!Store(codes[3], 0, settings.stopBits)) return 0;
    if (!Store(codes[4], 0, settings.flowControl)) return 0;
    if (!Store(codes[5], 0, settings.timeoutSeconds)) return 0;
    if (kind != 'S' && kind != 'U') return 0;
    settings.kind = kind;
    return 1;
}

void Change(Cwbalance& balance, faults::Settings& settings, fuzz::Input& input) {
    if (input.Coin()) {
        const int port = Code(input);
        fuzz::Require(balance.SetCommPort(port) == (port >= 0 ? 1 : 0),
                      "negative ports are refused");
        if (port >= 0) settings.port = port;
        return;
    }
    int codes[6];
    for (int& code : codes)
        code = Code(input);
    const char kind = "SUXs"[input.Below(4)];
    const int wanted = Apply(settings, codes, kind);
    const int got =
        balance.SetCommConfig(codes[0], codes[1], codes[2], codes[3], codes[4], codes[5], kind);
    fuzz::Require(wanted == got, "settings are refused where they have to be");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    static const faults::Description model = faults::TableOf<examples::Balance>();
    faults::Description table = model;
    Line& line = Line::Here();
    line.Reset();
    std::vector<int> results;
    bool ended = false;
    {
        const scripted::TraceCapture capture;
        examples::Balance balance;
        const int changes = input.Below(4);
        for (int i = 0; i < changes; ++i)
            Change(balance, table.settings, input);
        const auto act = [&] {
            results.push_back(balance.IsReady());
            results.push_back(balance.IsReady());
        };
        ended = fuzz::LineOfProcessEnd(act).has_value();
    }
    const std::vector<std::string> library = line.Transcript();

    line.Reset();
    {
        faults::Balance balance(table, line);
        try {
            for (const int result : results)
                fuzz::Require(balance.Perform({"IsReady"}, nullptr, nullptr) == result,
                              "the result");
            if (ended) balance.Perform({"IsReady"}, nullptr, nullptr);
            fuzz::Require(!ended, "no process end without a reason");
        } catch (const faults::ProcessEnd&) {
            fuzz::Require(ended, "the process ends where it has to");
        }
    }
    fuzz::Require(line.Transcript() == library, "the same calls and traces");
    return 0;
}
