#pragma once

#include <string>
#include <vector>

/// `wbalance-sim control`: asks a running wbalance-sim to change something. Returns the exit code.
int Control(std::vector<std::string> words);
