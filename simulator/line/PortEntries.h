#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "simulator/line/UsbIdentity.h"

namespace simulator {

/// What programs that list serial ports find of one: the entries that the system makes for a port
/// in /dev, /sys and /run/udev. They are real files and links below "system" in the directory of
/// lines; the object that is preloaded into a host leads the host's calls there.
class PortEntries {
 public:
    /// Of a port "ttyUSB<N>" the entries of a USB adapter of this identity, of "ttyS<N>" those of a
    /// port on the board. Throws std::system_error when a file cannot be created, leaving none.
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
