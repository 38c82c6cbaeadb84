#pragma once

#include <string>

#include "Arguments.h"
#include "process/Session.h"

namespace tool {

/// The options that say which balance is meant and how it is reached.
struct BalanceOptions {
    std::string driver;
    std::string port = "0";
    bool usb = false;
    std::string line;
    int timeoutSeconds = 1;
    bool trace = false;
    std::string recordPath;

    /// Adds the options to a command.
    void AddTo(arguments::Command command);
    /// Adds those of them that hold for several balances at once: time-out and trace.
    void AddSharedTo(arguments::Command command);

    /// The port as the user named it.
    PortName Port() const { return PortName(port, usb); }

    /// The way to the balance as it is now. Throws ToolError.
    Connection Connect() const;

    /// The balance itself. Throws ToolError.
    Session Open() const { return Session(Connect(), trace, recordPath); }
};

}  // namespace tool
