#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulator/line/Uart.h"
#include "simulator/line/UartSettings.h"

namespace simulator {

/// The host's end of a serial line as the serving side sees it. Used from one thread; nothing
/// blocks.
class HostLine {
 public:
    HostLine() = default;
    virtual ~HostLine() = default;
    HostLine(const HostLine&) = delete;
    HostLine& operator=(const HostLine&) = delete;

    /// The path that a host opens.
    virtual const std::string& Device() const = 0;

    /// Descriptors to poll for input at this moment.
    virtual std::vector<int> Descriptors() const = 0;

    /// How often to call Serve even if no descriptor is readable; empty if this is not necessary.
    virtual std::optional<std::chrono::milliseconds> LookEvery() const { return std::nullopt; }

    /// Bytes that arrived together, the settings at which they were sent, and break conditions.
    struct Arrival {
        std::string bytes;
        UartSettings settings;
        unsigned breaks = 0;
    };

    /// Notices what the host did: bytes, opening, closing, settings. Call it when a descriptor is
    /// readable. It calls `arrived` with what the host sent.
    virtual void Serve(const std::function<void(const Arrival&)>& arrived) = 0;

    /// Hands characters to the host as its port reads them; they are lost while it is closed.
    virtual void Deliver(const std::vector<Character>& characters) = 0;

    /// Whether a host has the line open.
    virtual bool IsOpen() const = 0;

    /// The settings that the host has made last.
    virtual UartSettings HostSettings() const = 0;

    /// The adapter is pulled out: the host's open port is hung up, the device is gone.
    virtual void Unplug() = 0;
    /// The adapter is back, as a new device of this name.
    virtual void PlugIn(const std::string& device) = 0;
};

}  // namespace simulator
