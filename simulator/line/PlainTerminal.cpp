#include "simulator/line/PlainTerminal.h"

namespace simulator {

PlainTerminal::PlainTerminal(const LineSettings& assumed) : assumed_(assumed) {
    plugIn({});
}

void PlainTerminal::serve(const std::function<void(const Arrival&)>& arrived) {
    bool hungUp = false;
    const std::string bytes = terminal_->read(&hungUp);
    if (!bytes.empty()) arrived({bytes, assumed_, 0});
}

void PlainTerminal::deliver(const std::vector<Character>& characters) {
    std::string bytes;
    for (const Character& character : characters)
        bytes += character.byte;
    terminal_->write(bytes);
}

void PlainTerminal::unplug() {
    plugIn({});
}

void PlainTerminal::plugIn(const std::string&) {
    terminal_ = std::make_unique<PseudoTerminal>();
    terminal_->holdOpen();
}

}  // namespace simulator
