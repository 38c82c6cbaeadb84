#pragma once

#include <optional>
#include <string>

namespace tool {

/// A port as the library takes it: a number and a kind.
struct PortNumber {
    int number = 0;
    char kind = 'S';  ///< 'S' for "/dev/ttyS<number>", 'U' for "/dev/ttyUSB<number>"

    std::string Device() const;

    /// The number in a device name; empty for a name that the library can't open.
    static std::optional<PortNumber> OfDevice(const std::string& device);
};

/// A port as people name it: a number, a device, or a stable link to one.
///
/// A stable name ("/dev/serial/by-id/...", a link that a udev rule makes) is followed anew at each
/// Resolve(), so that an adapter that came back under another number is found again.
class PortName {
 public:
    /// @param text a number, or a path; a bare name is taken from /dev
    /// @param usb whether a number stands for a USB adapter
    /// Throws ToolError for a text that can never be a port.
    PortName(const std::string& text, bool usb);

    /// The port behind the name now. Throws ToolError when it is not there or when the device that
    /// it leads to is not one that the library opens.
    PortNumber Resolve() const;

    /// As the user knows it: "/dev/ttyS0", "/dev/serial/by-id/...".
    const std::string& Text() const { return path_; }

 private:
    std::string path_;
};

}  // namespace tool
