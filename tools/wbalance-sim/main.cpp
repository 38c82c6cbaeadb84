#include "CommandLine.h"

int main(int argc, char** argv) {
    return runCommandLine({argv + 1, argv + argc});
}
