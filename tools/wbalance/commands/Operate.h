#pragma once

#include "Arguments.h"
#include "ExitCode.h"

namespace tool {

/// Adds tare, zero, preset-tare, display, on, off and factory-reset; `exitCode` receives what they
/// ended with.
void AddOperations(arguments::Command application, ExitCode& exitCode);

}  // namespace tool
