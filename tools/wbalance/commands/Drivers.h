#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance drivers`; `exitCode` receives what it ended with.
void AddDrivers(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
