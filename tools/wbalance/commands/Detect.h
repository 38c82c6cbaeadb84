#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance detect`; `exitCode` receives what it ended with.
void AddDetect(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
