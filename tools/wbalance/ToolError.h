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

/// Whether a program that asked for JSON gets this as an object: not what is wrong with its own
/// command line, nor that somebody has interrupted it.
inline bool IsForJson(const ToolError& error) {
    return error.code != ExitCode::Usage && error.code != ExitCode::Interrupted;
}

}  // namespace tool
