#pragma once

#include <string>

namespace tool {

/// How characters look on the line, in the codes of Cwbalance::SetCommConfig().
struct LineSettings {
    static constexpr int kKeepParity = 1024;  ///< a code outside the list: the port keeps its own

    int baudRate = 9600;
    int dataBits = 8;
    int parity = 0;
    int stopBits = 0;
    int flowControl = 0;

    /// Reads "2400", "2400,7E1", "2400,7E1.5" and "2400,7E1,rtscts" (or xonxoff, none): what is not
    /// named stays as it is in `defaults`. The parity is one of N, O, E, M, S, or - to leave the
    /// port's own. Throws ToolError for other text.
    static LineSettings Parse(const std::string& text, const LineSettings& defaults);

    /// The text that Parse() reads, in full: "2400,7E1" or "2400,7E1,rtscts".
    std::string Text() const;
};

bool operator==(const LineSettings& a, const LineSettings& b);

}  // namespace tool
