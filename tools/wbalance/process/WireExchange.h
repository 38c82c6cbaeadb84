#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace tool {

using WallTime = std::chrono::system_clock::time_point;

/// One text that the library traced, and when.
struct TraceText {
    WallTime time;
    std::string text;
};

/// One command and what came back for it.
struct WireExchange {
    std::string command;  ///< as sent, line end included
    bool taken = false;   ///< whether the port took every byte
    std::string answer;   ///< all that was received before the next command
    WallTime sent;
    WallTime answered;  ///< when the last of it had been received; `sent` without an answer
};

/// Whether a traced text is that of a command.
bool IsCommand(const std::string& traced);
/// Whether it is that of a wait to which nothing came.
bool IsPause(const std::string& traced);
/// What came according to it; empty for one that is about something else.
std::string AnswerIn(const std::string& traced);

/// What went over the line during an operation, read from the library's trace.
///
/// The trace is the only place where a host sees what the instrument answered. A '%' in an answer
/// is interpreted there, and what follows a zero byte is missing; such an answer no longer has its
/// instrument's form, so that it is never taken for a weight.
struct WireExchanges {
    explicit WireExchanges(const std::vector<TraceText>& trace);

    bool openFailed = false;       ///< the device could not be opened
    bool settingsRefused = false;  ///< the port does not take the line settings
    std::vector<WireExchange> exchanges;

    /// Whether the port took a whole command.
    bool AnythingSent() const;
    bool AnythingReceived() const;
    /// What was received, all of it.
    std::string Received() const;
};

}  // namespace tool
