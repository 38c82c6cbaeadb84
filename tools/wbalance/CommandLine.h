#pragma once

namespace tool {

/// Runs the program: reads the command line, carries the command out, reports errors on standard
/// error. Returns the exit code.
int RunCommandLine(int argc, char* argv[]);

}  // namespace tool
