#include "CommandLine.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "Arguments.h"
#include "ExitCode.h"
#include "commands/Control.h"
#include "commands/Serve.h"

namespace {

int carryOut(const std::vector<std::string>& words) {
    try {
        if (!words.empty() && words.front() == "control")
            return control({words.begin() + 1, words.end()});
        return serve(words);
    } catch (const arguments::HelpShown&) {
        return EXIT_SUCCESS;
    }
}

/// A list, a help or a path that got lost is no success.
void requireWritten() {
    if (!std::cout.flush()) throw std::runtime_error("standard output can't be written");
}

}  // namespace

int runCommandLine(const std::vector<std::string>& words) {
    try {
        const int exitCode = carryOut(words);
        requireWritten();
        return exitCode;
    } catch (const std::exception& error) {
        std::cerr << "wbalance-sim: " << error.what() << "\n";
        return ownFailure;
    }
}
