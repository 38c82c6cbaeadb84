#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance drivers`; `exitCode` receives what it ended with.
void AddDrivers(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
