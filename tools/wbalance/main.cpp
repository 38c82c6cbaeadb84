#include "CommandLine.h"

int main(int argc, char* argv[]) {
    return tool::RunCommandLine(argc, argv);
}
