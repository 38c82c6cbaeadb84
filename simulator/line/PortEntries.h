#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "simulator/line/UsbIdentity.h"

namespace simulator {

/// The entries that the system makes for a port in /dev, /sys and /run/udev, and that programs read
/// to list serial ports. They are real files and links below "system" in the directory of lines.
/// The object that is preloaded into a host redirects the host's calls to them.
class PortEntries {
 public:
    /// Creates the entries of a USB adapter of this identity for "ttyUSB<N>", and those of a
    /// built-in port for "ttyS<N>". Throws std::system_error when a file cannot be created, and
    /// then leaves none.
    PortEntries(const std::filesystem::path& directory, const std::string& name,
                const UsbIdentity& usb, const std::string& serialNumber);
    ~PortEntries();
    PortEntries(const PortEntries&) = delete;
    PortEntries& operator=(const PortEntries&) = delete;

 private:
    void RemoveAll() const;

    const std::string name_;
    std::vector<std::filesystem::path> own_;  ///< entries of this port alone
};

}  // namespace simulator
