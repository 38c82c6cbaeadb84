#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "process/BalanceProcess.h"

namespace tool {

/// The options that say which balance is meant and how it is reached.
struct BalanceOptions {
    std::string driver;
    std::string port = "0";
    bool usb = false;
    std::string line;
    int timeoutSeconds = 1;
    bool trace = false;

    /// Adds the options to a command.
    void AddTo(CLI::App& command);

    /// The port as the user named it.
    PortName Port() const { return PortName(port, usb); }

    /// The way to the balance as it is now. Throws ToolError.
    Connection Connect() const;

    /// What is done with the library's trace: standard error, or nothing.
    BalanceProcess::TraceSink TraceSink() const;
};

}  // namespace tool
