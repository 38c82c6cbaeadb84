#include "CommandLine.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "Arguments.h"
#include "ExitCode.h"
#include "commands/Control.h"
#include "commands/Serve.h"

namespace {

int CarryOut(const std::vector<std::string>& words) {
    try {
        if (!words.empty() && words.front() == "control")
            return Control({words.begin() + 1, words.end()});
        return Serve(words);
    } catch (const arguments::HelpShown&) {
        return EXIT_SUCCESS;
    }
}

/// A list, a help or a path that got lost is no success.
void RequireWritten() {
    if (!std::cout.flush()) throw std::runtime_error("standard output can't be written");
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& words) {
    try {
        const int exitCode = CarryOut(words);
        RequireWritten();
        return exitCode;
    } catch (const std::exception& error) {
        std::cerr << "wbalance-sim: " << error.what() << "\n";
        return kOwnFailure;
    }
}
