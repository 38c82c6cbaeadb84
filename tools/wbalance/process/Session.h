#pragma once

#include <memory>
#include <string>

#include "Recorder.h"

namespace tool {

/// One balance for a command that works with it step by step: shows progress, writes the record and
/// turns a port that fails into a ToolError.
class Session {
 public:
    /// @param showTrace whether the library's trace goes to standard error
    /// @param recordPath the file to record to; empty for none
    Session(const Connection& connection, bool showTrace, const std::string& recordPath = "");

    /// Carries the operation out. `what` names it in the progress line.
    Report Perform(const Request& request, const std::string& what);

    const Connection& Reached() const { return connection_; }

 private:
    const Connection connection_;
    const bool showTrace_;
    std::unique_ptr<Recorder> recorder_;
    BalanceProcess balance_;
};

/// Where a command sends the library's trace: standard error, or nowhere.
BalanceProcess::TraceSink SinkFor(bool showTrace);

}  // namespace tool
