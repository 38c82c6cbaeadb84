#pragma once

#include <CLI/CLI.hpp>

#include "ExitCode.h"

namespace tool {

/// Adds `wbalance weigh`; `exitCode` receives what it ended with.
void AddWeigh(CLI::App& application, ExitCode& exitCode);

}  // namespace tool
