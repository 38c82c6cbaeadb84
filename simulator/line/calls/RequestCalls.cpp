// The requests to an open port: modem lines, break, exclusive use, and what setserial shows.

#include <linux/serial.h>
#include <stdarg.h>
#include <string.h>
#include <sys/ioctl.h>
#include <termios.h>

#include "simulator/line/ServedLine.h"
#include "simulator/line/calls/HungUp.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/SettingsCalls.h"

using simulator::ServedLine;
using namespace simulator::calls;

namespace {

constexpr std::uint32_t kHostControlLines = TIOCM_DTR | TIOCM_RTS;

int ControlLines(const ServedLine& line, unsigned long request, void* argument) {
    int* bits = static_cast<int*>(argument);
    if (request == TIOCMGET) {
        *bits = static_cast<int>(line->controlLines);
        return 0;
    }
    const std::uint32_t chosen = static_cast<std::uint32_t>(*bits) & kHostControlLines;
    if (request != TIOCMBIS) {
        line->controlLines &= request == TIOCMBIC ? ~chosen : ~kHostControlLines;
    }
    if (request != TIOCMBIC) line->controlLines |= chosen;
    line.Rendezvous();
    return 0;
}

/// What setserial shows. Of what it sets, low latency alone is kept: for speeds that have no name
/// there are better ways than divisors.
int PortParameters(const ServedLine& line, unsigned long request, void* argument) {
    if (request == TIOCSSERIAL) {
        const int flags = static_cast<const serial_struct*>(argument)->flags;
        line->lowLatency = static_cast<std::uint32_t>(flags) & ASYNC_LOW_LATENCY;
        return 0;
    }
    serial_struct parameters = {};
    parameters.type = PORT_16550A;
    parameters.baud_base = 115200;
    parameters.flags = static_cast<int>(line->lowLatency.load());
    memcpy(argument, &parameters, sizeof parameters);
    return 0;
}

int SendBreak(const ServedLine& line) {
    line.Rendezvous();
    ++line->breaks;
    line.Rendezvous();
    return 0;
}

int Claim(const ServedLine& line, bool exclusive) {
    line->exclusive = exclusive ? 1 : 0;
    return 0;
}

int TellClaim(const ServedLine& line, void* argument) {
    *static_cast<int*>(argument) = line->exclusive != 0 ? 1 : 0;
    return 0;
}

/// Whether the request never reaches the pseudo-terminal, which would fail it after a hang-up.
bool IsAnsweredHere(unsigned long request) {
    switch (request) {
        case TIOCEXCL:
        case TIOCNXCL:
        case TIOCGEXCL:
        case TIOCMGET:
        case TIOCMSET:
        case TIOCMBIS:
        case TIOCMBIC:
        case TIOCGSERIAL:
        case TIOCSSERIAL:
        case TIOCSBRK:
        case TIOCCBRK:
        case TCSBRKP:
            return true;
        default:
            return false;
    }
}

/// The requests that a serial port answers differently from a pseudo-terminal.
int RequestServed(const ServedLine& line, int descriptor, unsigned long request, void* argument) {
    if (IsAboutSettings(request)) return RequestSettings(line, descriptor, request, argument);
    switch (request) {
        case TIOCEXCL:
        case TIOCNXCL:
            return Claim(line, request == TIOCEXCL);
        case TIOCGEXCL:
            return TellClaim(line, argument);
        case TIOCMGET:
        case TIOCMSET:
        case TIOCMBIS:
        case TIOCMBIC:
            return ControlLines(line, request, argument);
        case TIOCGSERIAL:
        case TIOCSSERIAL:
            return PortParameters(line, request, argument);
        case TIOCSBRK:
        case TCSBRKP:
            return SendBreak(line);
        case TIOCCBRK:
            return 0;
        default:
            return Next<::ioctl>("ioctl")(descriptor, request, argument);
    }
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int tcsendbreak(int descriptor, int duration) noexcept {
    const ServedLine line = ServedLine::OfDescriptor(descriptor);
    if (!line || IsHungUp(descriptor))
        return Next<::tcsendbreak>("tcsendbreak")(descriptor, duration);
    return SendBreak(line);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    const ServedLine line = ServedLine::OfDescriptor(descriptor);
    if (!line || (IsAnsweredHere(request) && IsHungUp(descriptor)))
        return Next<::ioctl>("ioctl")(descriptor, request, argument);
    return RequestServed(line, descriptor, request, argument);
}

}  // extern "C"
#pragma GCC visibility pop
