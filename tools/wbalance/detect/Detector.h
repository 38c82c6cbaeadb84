#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Probe.h"
#include "line/LineSettings.h"
#include "line/PortName.h"
#include "process/BalanceProcess.h"

namespace tool {

/// What was found on a port.
struct Detection {
    std::string driver;  ///< empty: no instrument was recognised
    LineSettings line;
    std::string answer;                 ///< that decided, or the last bytes that made no sense
    bool garbled = false;               ///< bytes came back, but no text
    bool foreignText = false;           ///< text came back, but of no known instrument
    LineSettings heardAt;               ///< where the bytes came back
    std::vector<LineSettings> refused;  ///< by the port, so that nothing was asked there
    Identity identity;                  ///< as the instrument tells it
};

/// Looks for an instrument with questions that change nothing on any of them.
class Detector {
 public:
    using Note = std::function<void(const std::string&)>;

    /// @param note is told what is being tried
    /// @param thorough every question at every usual setting, not only at the instruments' own
    Detector(PortNumber port, BalanceProcess::TraceSink sink, Note note, bool thorough);

    /// Settings that the port refuses are passed over. Throws ToolError when the port fails or the
    /// user interrupts.
    Detection Run();

    /// The line settings that are tried, each once.
    static std::vector<LineSettings> Settings(bool thorough);

 private:
    bool TryAt(const LineSettings& line);
    bool TryProbe(BalanceProcess& balance, const Connection& connection, const Probe& probe);
    bool IsRefused(const LineSettings& line) const;
    void NoteStranger(const std::string& answer, const LineSettings& line);
    std::string Ask(BalanceProcess& balance, const Connection& connection,
                    const std::string& command);
    /// Asks an instrument from which an answer has come before. If it does not answer now, it still
    /// counts as heard.
    std::string AskAgain(BalanceProcess& balance, const Connection& connection,
                         const std::string& command, const std::string& before);

    const PortNumber port_;
    const BalanceProcess::TraceSink sink_;
    const Note note_;
    const bool thorough_;
    Detection found_;
    std::vector<LineSettings> refused_;
    bool heard_ = false;  ///< whether the last question was answered with anything
};

}  // namespace tool
