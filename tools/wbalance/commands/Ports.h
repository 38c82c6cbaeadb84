#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance ports`; `exitCode` receives what it ended with.
void AddPorts(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
