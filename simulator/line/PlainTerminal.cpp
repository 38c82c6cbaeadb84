#include "simulator/line/PlainTerminal.h"

namespace simulator {

PlainTerminal::PlainTerminal(const LineSettings& assumed) : assumed_(assumed) {
    plugIn({});
}

std::vector<int> PlainTerminal::descriptors() const {
    if (!open_) return {};
    return {terminal_->descriptor()};
}

/// A bare terminal gives no notice when a program opens it, so it is looked at again and again.
std::optional<std::chrono::milliseconds> PlainTerminal::lookEvery() const {
    if (open_) return std::nullopt;
    return std::chrono::milliseconds(20);
}

void PlainTerminal::serve(const std::function<void(const Arrival&)>& arrived) {
    if (!terminal_) return;
    bool hungUp = false;
    const std::string bytes = terminal_->read(&hungUp);
    open_ = !hungUp;
    if (!bytes.empty()) arrived({bytes, assumed_, 0});
}

void PlainTerminal::deliver(const std::vector<Character>& characters) {
    if (!terminal_) return;
    std::string bytes;
    for (const Character& character : characters)
        bytes += character.byte;
    terminal_->write(bytes);
}

void PlainTerminal::unplug() {
    terminal_.reset();
    open_ = false;
}

void PlainTerminal::plugIn(const std::string&) {
    terminal_ = std::make_unique<PseudoTerminal>();
    path_ = terminal_->path();
    open_ = false;
}

}  // namespace simulator
