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

Finding WhyItGaveUp(const Report& report) {
    const bool said = report.words.find("libwbalance:") != std::string::npos;
    return {said ? Trouble::AnswerTooLong : Trouble::GaveUp, {{"WORDS", LastLine(report.words)}}};
}

// What kept an operation from the balance; Trouble::None where nothing did.
Finding FindingIn(const Connection& connection, const Report& report) {
    if (report.endless) return {Trouble::Endless};
    if (WasKilled(report)) return {Trouble::Killed, {{"SIGNAL", NameOf(report.signal)}}};
    if (report.died) return WhyItGaveUp(report);
    if (WireExchanges(report.trace).settingsRefused)
        return {Trouble::SettingsRefused, {{"LINE", connection.line.Text()}}};
    return {};
}

}  // namespace

void RequirePort(const Connection& connection, const Report& report) {
    const std::string device = connection.port.Device();
    const bool ended = report.endless || report.died;
    if (!ended && WireExchanges(report.trace).openFailed) throw ToolError(WhyNotOpened(device));
    const Finding finding = FindingIn(connection, report);
    if (finding.trouble != Trouble::None) throw ToolError(Diagnose(device, finding));
}

}  // namespace tool
