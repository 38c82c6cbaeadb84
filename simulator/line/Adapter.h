#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "simulator/line/Uart.h"
#include "simulator/line/UartSettings.h"
#include "simulator/line/UsbIdentity.h"

namespace simulator {

/// What stands between the wire and the host's program: a port hands the characters that it
/// receives over in pieces, and how large they are differs from port to port.
class Adapter {
 public:
    using Moment = std::chrono::microseconds;

    /// Hands every character over as it comes.
    Adapter() = default;

    /// Reads the name of a port, with a figure where it can be set:
    ///   16550[:TRIGGER]  a built-in port: 1, 4, 8 or 14 characters, 8 if not given; fewer after a
    ///                    silence of four character times; each by itself below 2400 baud
    ///   ftdi[:LATENCY]   what has come each 1 to 255 ms, 16 if not given, or 62 characters
    ///   pl2303, ch341    what has come each millisecond
    /// and "character" for each by itself. Throws std::invalid_argument, saying what there is.
    static Adapter Parse(const std::string& text);

    /// What it tells the system of itself where it is plugged in, as a FTDI adapter where the kind
    /// of port does not matter.
    const UsbIdentity& Usb() const { return usb_; }

    /// A character is complete on the wire, which is at the host's settings `line`. Not before what
    /// is due until then was handed over.
    void Receive(const Character& character, Moment at, const UartSettings& line);

    /// When the host gets what has been collected; empty when nothing has.
    std::optional<Moment> Due() const { return due_; }

    /// What has been collected goes to the host at `now`, at the due time or later.
    std::vector<Character> HandOver(Moment now);

 private:
    UsbIdentity usb_ = kFtdiIdentity;
    std::size_t trigger_ = 1;   ///< so many are handed over at once
    int slowestCollected_ = 0;  ///< below this baud rate nothing is collected
    int silence_ = 0;           ///< fewer are after so many character times without another
    Moment interval_{0};        ///< or, where this is not 0, in this interval
    Moment handedOver_{0};      ///< from which the interval counts
    std::vector<Character> collected_;
    std::optional<Moment> due_;
};

}  // namespace simulator
