#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance detect`; `exitCode` receives what it ended with.
void AddDetect(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
