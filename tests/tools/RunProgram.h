#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

#include "TemporaryFile.h"

/// What a program that has run has left.
struct Ran {
    int exitCode = -1;
    std::string output;  ///< standard output
    std::string errors;  ///< standard error
};

/// Runs a shell command to its end.
inline Ran RunShell(const std::string& command) {
    const TemporaryFile errors;
    Ran ran;
    FILE* pipe = popen(("{ " + command + "; } 2>" + errors.Path()).c_str(), "r");
    if (pipe == nullptr) return ran;
    std::array<char, 4096> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        ran.output.append(buffer.data(), count);
    const int status = pclose(pipe);
    ran.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ran.errors = errors.Text();
    return ran;
}

/// Runs `wbalance` alone.
inline Ran Wbalance(const std::string& arguments) {
    return RunShell(std::string(WBALANCE) + " " + arguments);
}

/// Runs `wbalance` while wbalance-sim serves an instrument.
inline Ran WbalanceWith(const std::string& instrument, const std::string& arguments) {
    return RunShell(std::string(WBALANCE_SIM) + " " + instrument + " -- " + WBALANCE + " " +
                    arguments);
}
