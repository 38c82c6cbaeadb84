// The calls that read and make the settings of a line. A pseudo-terminal knows 8 data bits without
// parity only: data bits, parity, stop bits and hardware flow control are remembered in the shared
// state and handed back as if the port had taken them.

#include "simulator/line/calls/SettingsCalls.h"

#include <stddef.h>
#include <string.h>
#include <sys/ioctl.h>
#include <termios.h>

#include "simulator/line/calls/HungUp.h"
#include "simulator/line/calls/Next.h"

/// The kernel's settings with free baud rates. Its header cannot be included beside <termios.h>;
/// without the two speeds it is the kernel's plain settings.
struct termios2 {
    tcflag_t c_iflag;
    tcflag_t c_oflag;
    tcflag_t c_cflag;
    tcflag_t c_lflag;
    cc_t c_line;
    cc_t c_cc[19];
    speed_t c_ispeed;
    speed_t c_ospeed;
};

namespace simulator::calls {
namespace {

constexpr size_t kPlainTermiosSize = offsetof(termios2, c_ispeed);

/// What the pseudo-terminal is told of settings meant for the line.
tcflag_t PlainCharacters(tcflag_t control) {
    return (control & ~tcflag_t{CSIZE | PARENB}) | CS8;
}

tcflag_t RememberedFlags(const ServedLine& line, tcflag_t control) {
    return (control & ~kLineFlags) | PackedLineFlags(line->settings);
}

struct Speed {
    tcflag_t code;
    std::uint32_t baudRate;
};
constexpr Speed kUsualSpeeds[] = {
    {B9600, 9600}, {B2400, 2400},   {B1200, 1200},   {B4800, 4800},   {B600, 600},
    {B300, 300},   {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}};

/// The baud rate that the terminal has taken with these flags; it is asked for the unusual ones.
std::uint32_t BaudRateTaken(int descriptor, tcflag_t control) {
    for (const Speed& speed : kUsualSpeeds)
        if (speed.code == (control & CBAUD)) return speed.baudRate;
    termios2 taken = {};
    Next<::ioctl>("ioctl")(descriptor, TCGETS2, &taken);
    return taken.c_ospeed;
}

/// Publishes settings that the pseudo-terminal has taken. Bytes sent before still belong to the
/// settings before.
void Remember(const ServedLine& line, int descriptor, tcflag_t control, tcflag_t input) {
    const std::uint64_t settings = PackSettings(control, input, BaudRateTaken(descriptor, control));
    if (settings == line->settings) return;
    line.Rendezvous();
    line->settings = settings;
}

/// A port that has gone refuses by itself, for another reason.
bool IsRefused(const ServedLine& line, int descriptor, tcflag_t control) {
    const std::uint32_t refused = line->refusedSpeed;
    const bool cannotDo = refused == VirtualLineState::kEverySpeed || refused == (control & CBAUD);
    return refused != B0 && cannotDo && !IsHungUp(descriptor);
}

int SetKernelSettings(const ServedLine& line, int descriptor, unsigned long request,
                      const void* argument, size_t size) {
    termios2 settings = {};
    memcpy(&settings, argument, size);
    const tcflag_t control = settings.c_cflag;
    if (IsRefused(line, descriptor, control)) return Fail(EINVAL);
    settings.c_cflag = PlainCharacters(control);
    const int result = Next<::ioctl>("ioctl")(descriptor, request, &settings);
    if (result == 0) Remember(line, descriptor, control, settings.c_iflag);
    return result;
}

int GetKernelSettings(const ServedLine& line, int descriptor, unsigned long request, void* argument,
                      size_t size) {
    termios2 settings = {};
    const int result = Next<::ioctl>("ioctl")(descriptor, request, &settings);
    if (result != 0) return result;
    settings.c_cflag = RememberedFlags(line, settings.c_cflag);
    memcpy(argument, &settings, size);
    return 0;
}

}  // namespace

bool IsAboutSettings(unsigned long request) {
    switch (request) {
        case TCGETS:
        case TCGETS2:
        case TCSETS:
        case TCSETSW:
        case TCSETSF:
        case TCSETS2:
        case TCSETSW2:
        case TCSETSF2:
            return true;
        default:
            return false;
    }
}

int RequestSettings(const ServedLine& line, int descriptor, unsigned long request, void* argument) {
    switch (request) {
        case TCGETS:
            return GetKernelSettings(line, descriptor, request, argument, kPlainTermiosSize);
        case TCGETS2:
            return GetKernelSettings(line, descriptor, request, argument, sizeof(termios2));
        case TCSETS:
        case TCSETSW:
        case TCSETSF:
            return SetKernelSettings(line, descriptor, request, argument, kPlainTermiosSize);
        default:
            return SetKernelSettings(line, descriptor, request, argument, sizeof(termios2));
    }
}

}  // namespace simulator::calls

using simulator::ServedLine;
using namespace simulator::calls;

#pragma GCC visibility push(default)
extern "C" {

int tcgetattr(int descriptor, struct termios* settings) noexcept {
    const int result = Next<::tcgetattr>("tcgetattr")(descriptor, settings);
    if (result != 0) return result;
    if (const ServedLine line = ServedLine::OfDescriptor(descriptor))
        settings->c_cflag = RememberedFlags(line, settings->c_cflag);
    return 0;
}

int tcsetattr(int descriptor, int action, const struct termios* settings) noexcept {
    const ServedLine line = ServedLine::OfDescriptor(descriptor);
    if (!line) return Next<::tcsetattr>("tcsetattr")(descriptor, action, settings);
    if (IsRefused(line, descriptor, settings->c_cflag)) return Fail(EINVAL);
    struct termios plain = *settings;
    plain.c_cflag = PlainCharacters(settings->c_cflag);
    const int result = Next<::tcsetattr>("tcsetattr")(descriptor, action, &plain);
    if (result == 0) Remember(line, descriptor, settings->c_cflag, settings->c_iflag);
    return result;
}

}  // extern "C"
#pragma GCC visibility pop
