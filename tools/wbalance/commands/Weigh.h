#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance weigh`; `exitCode` receives what it ended with.
void AddWeigh(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
