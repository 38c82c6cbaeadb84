#pragma once

#include <string>
#include <vector>

/// Runs wbalance-sim with the words after its name and returns its exit code.
int RunCommandLine(const std::vector<std::string>& words);
