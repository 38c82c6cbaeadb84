#pragma once

#include <CLI/CLI.hpp>

#include "ExitCode.h"

namespace tool {

/// Adds `wbalance drivers`; `exitCode` receives what it ended with.
void AddDrivers(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
