#include "LiveDisplay.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

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

// How often Enter was pressed. The terminal shows what is typed, each Enter as a line below the
// picture; nobody else reads it.
std::size_t TakeTypedLines() {
    std::size_t lines = 0;
    pollfd keyboard{STDOUT_FILENO, POLLIN, 0};
    while (poll(&keyboard, 1, 0) > 0 && (keyboard.revents & POLLIN) != 0) {
        char typed[256];
        const ssize_t count = read(STDOUT_FILENO, typed, sizeof typed);
        // Also Ctrl-D, which is no line, and a terminal that is open for writing only.
        if (count <= 0) break;
        lines += static_cast<std::size_t>(std::count(typed, typed + count, '\n'));
    }
    return lines;
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
    const std::size_t typedLines = TakeTypedLines();
    const auto picture = PictureOf(balances, size, DisplayedBalance::Clock::now());
    if (picture == drawn_ && size == size_ && typedLines == 0) return;
    std::string bytes = WayToTheTop(size, typedLines);
    for (const auto& line : picture)
        bytes += line + "\x1b[K\n";
    Print(bytes + "\x1b[J");
    drawn_ = picture;
    size_ = size;
}

std::string LiveDisplay::WayToTheTop(ScreenSize size, std::size_t typedLines) const {
    if (drawn_.empty()) return "\r";
    // Where a terminal of another size has left the lines, only the terminal knows.
    if (!(size == size_)) return "\x1b[H\x1b[2J";
    return "\r\x1b[" + std::to_string(drawn_.size() + typedLines) + "A";
}

}  // namespace tool
