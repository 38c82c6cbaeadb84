#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds `wbalance doctor`; `exitCode` receives what it ended with.
void AddDoctor(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
