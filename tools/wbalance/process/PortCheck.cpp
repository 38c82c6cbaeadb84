#include "PortCheck.h"

#include "ToolError.h"
#include "line/PortTrouble.h"

namespace tool {
namespace {

/// The line with which the library ends a process; Qt may have said other things before.
std::string LastLine(const std::string& words) {
    const std::size_t end = words.find_last_not_of('\n');
    if (end == std::string::npos) return "";
    const std::size_t before = words.find_last_of('\n', end);
    const std::size_t start = before == std::string::npos ? 0 : before + 1;
    return words.substr(start, end + 1 - start);
}

}  // namespace

void RequirePort(const Connection& connection, const Report& report) {
    const std::string device = connection.port.Device();
    if (report.killed) {
        throw ToolError(ExitCode::Internal,
                        device + ": the process that talked to the balance was killed; try again");
    }
    if (report.died) {
        throw ToolError(ExitCode::Internal,
                        device +
                            ": more came than an answer can hold, and the library gave "
                            "up; switch the balance's continuous output off. It said: " +
                            LastLine(report.words));
    }
    const Dialogue dialogue(report.trace);
    if (dialogue.openFailed) throw ToolError(ExitCode::PortFailed, WhyNotOpened(device));
    if (dialogue.settingsRefused) {
        throw ToolError(ExitCode::PortFailed,
                        device + ": the port refuses the line settings " + connection.line.Text() +
                            "; choose others with --line, or use another adapter");
    }
}

}  // namespace tool
