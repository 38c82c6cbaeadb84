#pragma once

#include <string>
#include <vector>

/// The program that is run against a simulated instrument: it gets the virtual-line object
/// preloaded, behind whatever is preloaded already (a sanitizer's runtime must come first).
class HostProgram {
 public:
    /// Starts `command`, found through PATH; its first word is the program. Throws
    /// std::runtime_error when the virtual-line object is missing. A program that cannot be started
    /// shows in exitCode.
    explicit HostProgram(const std::vector<std::string>& command);

    /// Waits for the end of the program and passes on the signals that reach this process. Returns
    /// the program's exit code, or 128 and the number of the signal that ended it; 127 when there
    /// is no such program, 126 when it cannot be run.
    int ExitCode();

    /// Blocks the signals that are passed on or waited for. Call it before any thread is started.
    static void HoldSignals();
    /// Unblocks these signals: from now on they end this process.
    static void ReleaseSignals();
    /// Waits for a signal that asks this process to end.
    static void WaitForEndingSignal();

 private:
    int process_ = -1;
    int startError_ = 0;
    std::string name_;
};
