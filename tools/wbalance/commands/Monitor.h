#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance monitor`; `exitCode` receives what it ended with.
void AddMonitor(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
