#pragma once

#include <memory>

#include "simulator/line/HostLine.h"
#include "simulator/line/PseudoTerminal.h"

namespace simulator {

/// A line for hosts without the preloaded object: a bare pseudo-terminal that any software can open
/// by its path. A pseudo-terminal does not show the host's settings, so they are assumed to be
/// right.
class PlainTerminal final : public HostLine {
 public:
    /// `assumed` are the settings that this line reports as the host's.
    explicit PlainTerminal(const UartSettings& assumed);

    const std::string& Device() const override { return path_; }
    /// None while it is closed: a closed terminal would always be ready.
    std::vector<int> Descriptors() const override;
    std::optional<std::chrono::milliseconds> LookEvery() const override;
    void Serve(const std::function<void(const Arrival&)>& arrived) override;
    void Deliver(const std::vector<Character>& characters) override;
    bool IsOpen() const override { return open_; }
    UartSettings HostSettings() const override { return assumed_; }
    /// Hangs up the host. The path does not exist any more.
    void Unplug() override;
    /// Opens a new pseudo-terminal. The system chooses its path; `device` is ignored.
    void PlugIn(const std::string& device) override;

 private:
    UartSettings assumed_;
    std::unique_ptr<PseudoTerminal> terminal_;
    std::string path_;
    bool open_ = false;
};

}  // namespace simulator
