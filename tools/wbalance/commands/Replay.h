#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance replay`; `exitCode` receives what it ended with.
void AddReplay(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
