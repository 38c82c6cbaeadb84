#pragma once

#include <stdexcept>
#include <string>

#include "Trouble.h"

namespace tool {

/// Ends a command: what is wrong and what to do about it, in one sentence, with the exit code.
class ToolError : public std::runtime_error {
 public:
    ToolError(ExitCode exitCode, const std::string& sentence)
        : std::runtime_error(sentence), code(exitCode) {}
    explicit ToolError(const Diagnosis& diagnosis)
        : ToolError(diagnosis.code, diagnosis.sentence) {}

    const ExitCode code;
};

/// Whether this is reported as an object if JSON was asked for. A wrong command line and an
/// interruption are not.
inline bool IsForJson(const ToolError& error) {
    return error.code != ExitCode::Usage && error.code != ExitCode::Interrupted;
}

}  // namespace tool
