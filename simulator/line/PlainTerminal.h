#pragma once

#include <memory>

#include "simulator/line/HostLine.h"
#include "simulator/line/PseudoTerminal.h"

namespace simulator {

/// A line for hosts into which nothing is loaded: a bare pseudo-terminal that any software opens by
/// its path. A pseudo-terminal does not tell the host's settings, so they are taken to be right.
class PlainTerminal final : public HostLine {
 public:
    /// `assumed` are the host's settings as far as this line knows.
    explicit PlainTerminal(const UartSettings& assumed);

    const std::string& Device() const override { return path_; }
    /// None while it is closed: a closed terminal would always be ready.
    std::vector<int> Descriptors() const override;
    std::optional<std::chrono::milliseconds> LookEvery() const override;
    void Serve(const std::function<void(const Arrival&)>& arrived) override;
    void Deliver(const std::vector<Character>& characters) override;
    bool IsOpen() const override { return open_; }
    UartSettings HostSettings() const override { return assumed_; }
    /// Hangs the host up; the path is gone.
    void Unplug() override;
    /// A new pseudo-terminal; its path is the system's choice, not `device`.
    void PlugIn(const std::string& device) override;

 private:
    UartSettings assumed_;
    std::unique_ptr<PseudoTerminal> terminal_;
    std::string path_;
    bool open_ = false;
};

}  // namespace simulator
