#include "LiveDisplay.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "output/Stream.h"
#include "process/Interrupt.h"

namespace tool {
namespace {

ScreenSize SizeOfTerminal() {
    winsize size{};
    // A terminal on a serial line does not know its size.
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {};
    return {size.ws_col, size.ws_row};
}

// Whether the terminal is that of somebody else just now, as it is after Ctrl-Z and `bg`.
bool IsInBackground() {
    const pid_t group = tcgetpgrp(STDOUT_FILENO);
    return group >= 0 && group != getpgrp();
}

}  // namespace

LiveDisplay::LiveDisplay() {
    HoldTerminalSignals();
}

void LiveDisplay::Draw(const std::vector<DisplayedBalance>& balances) {
    // Others have written since; the picture goes below that.
    if (TakeContinuation() || IsInBackground()) drawn_.clear();
    if (IsInBackground()) return;
    const ScreenSize size = SizeOfTerminal();
    const auto picture = PictureOf(balances, size, DisplayedBalance::Clock::now());
    if (picture == drawn_ && size == size_) return;
    std::string bytes = WayToTheTop(size);
    for (const auto& line : picture)
        bytes += line + "\x1b[K\n";
    Print(bytes + "\x1b[J");
    drawn_ = picture;
    size_ = size;
}

std::string LiveDisplay::WayToTheTop(ScreenSize size) const {
    if (drawn_.empty()) return "\r";
    // Where a terminal of another size has left the lines, only the terminal knows.
    if (!(size == size_)) return "\x1b[H\x1b[2J";
    return "\r\x1b[" + std::to_string(drawn_.size()) + "A";
}

}  // namespace tool
