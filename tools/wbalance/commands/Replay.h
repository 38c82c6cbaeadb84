#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance replay`; `exitCode` receives what it ended with.
void AddReplay(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
