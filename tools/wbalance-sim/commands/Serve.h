#pragma once

#include <string>
#include <vector>

/// The command line without a subcommand: sets up the instruments that `words` name and runs a
/// program against them, or serves them until a signal ends it. Returns the exit code.
int Serve(std::vector<std::string> words);
