#pragma once

#include <string>
#include <vector>

namespace tool {

/// What is known of a serial port of this computer.
struct PortInfo {
    std::string device;  ///< "/dev/ttyUSB0"
    std::string maker;   ///< of the adapter; empty where it has none to tell, as the next two
    std::string product;
    std::string serialNumber;
    std::vector<std::string> stableNames;  ///< links that lead to it wherever it is plugged in
    std::string group;                     ///< of users who may open it
    bool mayOpen = false;                  ///< whether this user is one of them
    std::string holder;  ///< who has it open, as far as this user may know; empty: nobody
};

/// The ports that the library can open, in the order of their names.
std::vector<PortInfo> ListPorts();

/// The links below `folder` that lead to `device`: first those of by-id, then by-path, then those
/// that a rule of this computer's own makes directly in `folder`.
std::vector<std::string> StableNamesOf(const std::string& device,
                                       const std::string& folder = "/dev");

}  // namespace tool
