#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "simulator/line/HostLine.h"
#include "simulator/line/PortEntries.h"
#include "simulator/line/PseudoTerminal.h"
#include "simulator/line/VirtualLineState.h"

namespace simulator {

/// The serving side of one virtual serial line: a device such as "/dev/ttyS0". It exists for
/// programs that have the virtual-line object loaded and `directory` in WBALANCE_VIRTUAL_LINES.
class VirtualLine final : public HostLine {
 public:
    /// What stat says of the node.
    struct Node {
        unsigned mode;  ///< permission bits, 0660 at first
        uid_t owner;    ///< 0 at first
        gid_t group;    ///< 20 at first, which is dialout on Debian
    };

    /// Serves `device` ("/dev/ttyS<N>" or "/dev/ttyUSB<N>"). Throws std::invalid_argument for
    /// another name and for one that is served already, std::system_error when files or
    /// pseudo-terminal cannot be created. As "/dev/ttyUSB<N>" it is an adapter of this identity.
    VirtualLine(std::filesystem::path directory, const std::string& device,
                const UsbIdentity& usb = kFtdiIdentity);
    ~VirtualLine() override;

    const std::string& Device() const override { return device_; }
    std::vector<int> Descriptors() const override;
    /// Only until the terminal's age is told.
    std::optional<std::chrono::milliseconds> LookEvery() const override;
    void Serve(const std::function<void(const Arrival&)>& arrived) override;
    void Deliver(const std::vector<Character>& characters) override;
    bool IsOpen() const override { return terminal_ && state_->hostOpen != 0; }
    UartSettings HostSettings() const override;
    void Unplug() override;
    void PlugIn(const std::string& device) override;

    /// TIOCM_ bits of the host (DTR, RTS) and of the instrument (CTS, DSR, CD, RI).
    unsigned ControlLines() const { return state_->controlLines; }
    void SetInstrumentControlLines(unsigned bits);

    /// Makes open fail with this errno; with 0 it opens as usual.
    void RefuseOpen(int error) { state_->openError = error; }
    /// The same for the next open only, as if another program had closed the port just after it.
    void RefuseNextOpen(int error) { state_->nextOpenError = error; }
    /// Makes the node one without a serial port, as the kernel has for built-in ports that the
    /// computer does not have. It can be opened, but is not a terminal.
    void TakePortAway() { state_->bare = 1; }
    /// Makes the adapter refuse this speed, such as B2400, with EINVAL. With B0 it refuses none.
    void RefuseSpeed(speed_t speed) { state_->refusedSpeed = speed; }
    void RefuseEverySpeed() { state_->refusedSpeed = VirtualLineState::kEverySpeed; }
    void SetNode(const Node& node);

 private:
    /// The files of one device name, opened.
    class Files;

    std::filesystem::path File(const std::string& name) const { return directory_ / name; }
    std::unique_ptr<Files> FilesOf(const std::string& name);
    void CreateFiles(const std::string& name);
    void RemoveFiles(const std::string& name) const;
    void LinkTerminal(const PseudoTerminal& terminal) const;
    void TellAge();
    void EmptyBell() const;
    void Opened();
    void HungUp();
    Arrival TakeBytes();

    const std::filesystem::path directory_;
    const UsbIdentity usb_;
    const std::string serialNumber_;  ///< is kept when the adapter comes back under another name
    std::string device_;
    /// The names that this line has had. Their files stay until the line ends: without them, a host
    /// would find the system's device of that name after the adapter was unplugged. Only the files
    /// of the present name need descriptors.
    std::set<std::string> names_;
    std::unique_ptr<Files> files_;
    std::unique_ptr<PseudoTerminal> terminal_;
    std::unique_ptr<PortEntries> entries_;
    VirtualLineState* state_ = nullptr;
    unsigned breaksSeen_ = 0;
};

}  // namespace simulator
