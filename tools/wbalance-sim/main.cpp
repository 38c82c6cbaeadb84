#include "CommandLine.h"
#include "StandardStreams.h"

int main(int argc, char** argv) {
    OccupyStandardStreams();
    return runCommandLine({argv + 1, argv + argc});
}
