#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace simulator {

enum class Parity { None, Odd, Even, Mark, Space };
enum class FlowControl { None, Hardware, Software };

/// How characters look on a serial line.
struct UartSettings {
    int baudRate = 9600;                          ///< bits per second, 1 or more
    int dataBits = 8;                             ///< 5 to 8
    Parity parity = Parity::None;                 ///< kind of parity bit
    int stopBits = 1;                             ///< 1 or 2
    FlowControl flowControl = FlowControl::None;  ///< who may stop the sender, and how

    /// Reads "2400,7E1", "9600 8N1" or, with flow control, "2400,7E1,rtscts" and
    /// "2400,7E1,xonxoff"; the parity is one of the letters N, O, E, M, S. Empty for other text.
    static std::optional<UartSettings> Parse(const std::string& text);

    /// The text that Parse reads: "2400,7E1".
    std::string Text() const;

    /// Start bit, data bits, parity bit and stop bits of one character.
    int BitsPerCharacter() const;

    /// How long one character takes on the line; nothing at 0 baud.
    std::chrono::microseconds CharacterTime() const;

    /// Whether a character sent at these settings is read unchanged at the other settings. All
    /// settings must be equal except flow control, which does not change the bits.
    bool AgreesWith(const UartSettings& other) const;
};

bool operator==(const UartSettings& a, const UartSettings& b);
bool operator!=(const UartSettings& a, const UartSettings& b);

}  // namespace simulator
