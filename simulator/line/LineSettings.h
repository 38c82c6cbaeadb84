#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace simulator {

enum class Parity { none, odd, even, mark, space };
enum class FlowControl { none, hardware, software };

/// How characters look on a serial line.
struct LineSettings {
    int baudRate = 9600;                          ///< bits per second, 1 or more
    int dataBits = 8;                             ///< 5 to 8
    Parity parity = Parity::none;                 ///< kind of parity bit
    int stopBits = 1;                             ///< 1 or 2
    FlowControl flowControl = FlowControl::none;  ///< who may stop the sender, and how

    /// Reads "2400,7E1", "9600 8N1" or, with flow control, "2400,7E1,rtscts" and
    /// "2400,7E1,xonxoff"; the parity is one of the letters N, O, E, M, S. Empty for other text.
    static std::optional<LineSettings> parse(const std::string& text);

    /// The text that parse reads: "2400,7E1".
    std::string text() const;

    /// Start bit, data bits, parity bit and stop bits of one character.
    int bitsPerCharacter() const;

    /// How long one character takes on the line; nothing at 0 baud.
    std::chrono::microseconds characterTime() const;

    /// Whether a character of these settings is read unchanged at the other settings: all equal but
    /// flow control, which does not change the bits.
    bool agreesWith(const LineSettings& other) const;
};

bool operator==(const LineSettings& a, const LineSettings& b);
bool operator!=(const LineSettings& a, const LineSettings& b);

}  // namespace simulator
