#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance weigh`; `exitCode` receives what it ended with.
void AddWeigh(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
