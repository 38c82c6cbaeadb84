#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "simulator/line/Uart.h"
#include "simulator/line/UartSettings.h"
#include "simulator/line/UsbIdentity.h"

namespace simulator {

/// The port between the line and the host program. It hands over the received characters in pieces.
/// The size of the pieces depends on the kind of port.
class Adapter {
 public:
    using Moment = std::chrono::microseconds;

    /// Hands over each character when it comes.
    Adapter() = default;

    /// Reads the name of a port, with a figure where it can be set:
    ///   16550[:TRIGGER]  a built-in port: 1, 4, 8 or 14 characters, 8 if not given; fewer after a
    ///                    silence of four character times; each by itself below 2400 baud
    ///   ftdi[:LATENCY]   what has come each 1 to 255 ms, 16 if not given, or 62 characters
    ///   pl2303, ch341    what has come each millisecond
    /// and "character" for each by itself. Throws std::invalid_argument, saying what there is.
    static Adapter Parse(const std::string& text);

    /// The identity that it shows to the system when it is plugged in. It is that of an FTDI
    /// adapter if the kind of port does not matter.
    const UsbIdentity& Usb() const { return usb_; }

    /// A character has arrived completely. `line` are the host's settings. Call this only after
    /// handing over what was due before.
    void Receive(const Character& character, Moment at, const UartSettings& line);

    /// When the host gets the collected characters; empty when there are none.
    std::optional<Moment> Due() const { return due_; }

    /// Returns the collected characters for the host. `now` is the due time or later.
    std::vector<Character> HandOver(Moment now);

 private:
    UsbIdentity usb_ = kFtdiIdentity;
    std::size_t trigger_ = 1;   ///< as many characters are handed over together
    int slowestCollected_ = 0;  ///< below this baud rate nothing is collected
    int silence_ = 0;  ///< character times without a character, after which fewer are handed over
    Moment interval_{0};    ///< if not 0: the interval in which characters are handed over
    Moment handedOver_{0};  ///< the time from which the interval is counted
    std::vector<Character> collected_;
    std::optional<Moment> due_;
};

}  // namespace simulator
