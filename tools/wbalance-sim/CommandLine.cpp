#include "CommandLine.h"

#include <cstdlib>
#include <iostream>

#include "Arguments.h"
#include "ExitCode.h"
#include "commands/Control.h"
#include "commands/Serve.h"

int runCommandLine(const std::vector<std::string>& words) {
    try {
        if (!words.empty() && words.front() == "control")
            return control({words.begin() + 1, words.end()});
        return serve(words);
    } catch (const arguments::HelpShown&) {
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "wbalance-sim: " << error.what() << "\n";
        return ownFailure;
    }
}
