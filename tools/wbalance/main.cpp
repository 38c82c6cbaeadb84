#include "CommandLine.h"
#include "StandardStreams.h"

int main(int argc, char* argv[]) {
    OccupyStandardStreams();
    return tool::RunCommandLine(argc, argv);
}
