#include "simulator/line/PlainTerminal.h"

namespace simulator {

PlainTerminal::PlainTerminal(const UartSettings& assumed) : assumed_(assumed) {
    PlugIn({});
}

std::vector<int> PlainTerminal::Descriptors() const {
    if (!open_) return {};
    return {terminal_->Descriptor()};
}

/// A bare terminal gives no notice when a program opens it, so it is looked at again and again.
std::optional<std::chrono::milliseconds> PlainTerminal::LookEvery() const {
    if (open_) return std::nullopt;
    return std::chrono::milliseconds(20);
}

void PlainTerminal::Serve(const std::function<void(const Arrival&)>& arrived) {
    if (!terminal_) return;
    bool hungUp = false;
    const std::string bytes = terminal_->Read(&hungUp);
    open_ = !hungUp;
    if (!bytes.empty() || hungUp) terminal_->ForgetSpeed();
    if (!bytes.empty()) arrived({bytes, assumed_, 0});
}

void PlainTerminal::Deliver(const std::vector<Character>& characters) {
    if (!terminal_) return;
    std::string bytes;
    for (const Character& character : characters)
        bytes += character.byte;
    terminal_->Write(bytes);
}

void PlainTerminal::Unplug() {
    terminal_.reset();
    open_ = false;
}

void PlainTerminal::PlugIn(const std::string& /*device*/) {
    terminal_ = std::make_unique<PseudoTerminal>();
    terminal_->ForgetSpeed();
    path_ = terminal_->Path();
    open_ = false;
}

}  // namespace simulator
