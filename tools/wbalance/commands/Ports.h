#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance ports`; `exitCode` receives what it ended with.
void AddPorts(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
