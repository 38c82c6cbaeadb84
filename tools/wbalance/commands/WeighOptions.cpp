#include "WeighOptions.h"

#include <map>

#include "ToolError.h"

namespace tool {
namespace {

long ModeFor(const std::string& word) {
    static const std::map<std::string, long> kModes = {{"stable", 0}, {"0", 0},   {"auto", 1},
                                                       {"1", 1},      {"now", 2}, {"2", 2}};
    const auto mode = kModes.find(word);
    if (mode == kModes.end())
        throw ToolError(ExitCode::Usage,
                        "there is no mode \"" + word + "\"; there are: stable, auto, now");
    return mode->second;
}

}  // namespace

void WeighOptions::AddTo(arguments::Command command) {
    command
        .AddOption(
            "-m,--mode", [this](const std::string& word) { mode = ModeFor(word); },
            "stable (0): only a weight that the balance reports as stable; auto (1): a stable one, "
            "else the driver's fallback; now (2): what the balance shows. `wbalance drivers NAME` "
            "says what a driver does in each mode")
        .TypeName("MODE")
        .ShowDefault("auto");
    format.AddTo(command, ", also when there is no weight");
}

}  // namespace tool
