#include "PortCheck.h"

#include <csignal>
#include <cstring>

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

// SIGABRT is the library's own way to give up.
bool WasKilled(const Report& report) {
    return report.signal != 0 && report.signal != SIGABRT;
}

std::string NameOf(int signal) {
    const char* name = sigabbrev_np(signal);
    return name == nullptr ? "signal " + std::to_string(signal) : std::string("SIG") + name;
}

std::string WhyItGaveUp(const Report& report) {
    const std::string said = " It said: " + LastLine(report.words);
    if (report.words.find("libwbalance:") == std::string::npos)
        return "the process that talked to the balance gave up; try again." + said;
    return "more came than an answer can hold, and the library gave up; switch the balance's "
           "continuous output off." +
           said;
}

}  // namespace

void RequirePort(const Connection& connection, const Report& report) {
    const std::string device = connection.port.Device();
    if (report.endless) {
        throw ToolError(ExitCode::NotUnderstood,
                        device +
                            ": the balance sends without end, so that no answer can be told from "
                            "the next; switch its continuous output (auto print) off");
    }
    if (WasKilled(report)) {
        throw ToolError(ExitCode::Internal,
                        device + ": the process that talked to the balance was killed (" +
                            NameOf(report.signal) + "); try again");
    }
    if (report.died) throw ToolError(ExitCode::Internal, device + ": " + WhyItGaveUp(report));
    const Dialogue dialogue(report.trace);
    if (dialogue.openFailed) throw ToolError(ExitCode::PortFailed, WhyNotOpened(device));
    if (dialogue.settingsRefused) {
        throw ToolError(ExitCode::PortFailed,
                        device + ": the port refuses the line settings " + connection.line.Text() +
                            "; choose others with --line, or use another adapter");
    }
}

}  // namespace tool
