#pragma once

#include "ExitCode.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds tare, zero, preset-tare, display, on, off and factory-reset; `exitCode` receives what they
/// ended with.
void AddOperations(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
