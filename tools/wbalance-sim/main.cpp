#include <csignal>

#include "CommandLine.h"
#include "StandardStreams.h"

int main(int argc, char** argv) {
    OccupyStandardStreams();
    // A log that may not grow any more is told by the write that fails. A handler, because the
    // program that is run would inherit that the signal is ignored.
    std::signal(SIGXFSZ, [](int) {});
    return RunCommandLine({argv + 1, argv + argc});
}
