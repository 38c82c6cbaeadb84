#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds `wbalance doctor`; `exitCode` receives what it ended with.
void AddDoctor(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
