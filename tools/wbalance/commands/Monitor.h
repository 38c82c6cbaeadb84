#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance monitor`; `exitCode` receives what it ended with.
void AddMonitor(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
