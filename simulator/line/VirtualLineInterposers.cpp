// The calls of the C library through which a host reaches a serial port. Each is passed on
// unchanged unless it concerns a served device: then the bytes go through a pseudo-terminal, which
// knows 8 data bits without parity only, while data bits, parity, stop bits and hardware flow
// control are remembered in the shared state and handed back as if the port had taken them.

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/serial.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <atomic>

#include "simulator/line/ServedLine.h"

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

namespace {

using simulator::ServedLine;

constexpr size_t kPlainTermiosSize = offsetof(termios2, c_ispeed);

/// The C library's own function in place of `replaced` (or that of the next preloaded object).
template <auto& replaced>
auto Next(const char* name) {
    static std::atomic<decltype(&replaced)> found{nullptr};
    if (!found) found = reinterpret_cast<decltype(&replaced)>(dlsym(RTLD_NEXT, name));
    return found.load();
}

int Fail(int error) {
    errno = error;
    return -1;
}

/// A path to pass on: the lock file of a served device lies beside the line's state.
class PassedOn {
 public:
    explicit PassedOn(const char* path)
        : path_(ServedLine::RedirectsLock(path, redirected_, sizeof redirected_) ? redirected_
                                                                                 : path) {}
    operator const char*() const { return path_; }

 private:
    char redirected_[PATH_MAX];
    const char* path_;
};

bool MayOpen(const ServedLine& line, int* error) {
    *error = 0;
    if (!line->present)
        *error = ENOENT;
    else if (line->openError)
        *error = line->openError;
    else if (const int passing = line->nextOpenError.exchange(0))
        *error = passing;
    else if (geteuid() != 0 && line.StaysExclusive())
        *error = EBUSY;
    return *error == 0;
}

int OpenServed(const ServedLine& line, int flags) {
    int error = 0;
    if (!MayOpen(line, &error)) return Fail(error);
    if (line->bare) return Next<::open64>("open64")("/dev/null", flags & ~O_CREAT, 0);
    char pts[32];
    snprintf(pts, sizeof pts, "/dev/pts/%u", line->ptsNumber.load());
    const int descriptor = Next<::open64>("open64")(pts, (flags & ~O_CREAT) | O_NOCTTY, 0);
    if (descriptor < 0) return Fail(ENODEV);
    // A closed port receives nothing: what lies in the pseudo-terminal was never seen by the host.
    if (!line->hostOpen) Next<::tcflush>("tcflush")(descriptor, TCIFLUSH);
    line.Rendezvous();
    return descriptor;
}

mode_t ModeArgument(int flags, va_list arguments) {
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t) : 0;
}

int OpenAt(int directory, const char* path, int flags, mode_t mode) {
    if (const ServedLine line = ServedLine::AtPath(path)) return OpenServed(line, flags);
    return Next<::openat64>("openat64")(directory, PassedOn(path), flags, mode);
}

int AccessServed(const ServedLine& line, int mode) {
    if (!line->present) return Fail(ENOENT);
    if (mode & X_OK) return Fail(EACCES);
    if ((mode & (R_OK | W_OK)) && line->openError == EACCES) return Fail(EACCES);
    return 0;
}

template <typename Stat>
int StatServed(const ServedLine& line, Stat* result) {
    if (!line->present) return Fail(ENOENT);
    memset(result, 0, sizeof *result);
    result->st_mode = S_IFCHR | line->mode;
    result->st_nlink = 1;
    result->st_uid = line->owner;
    result->st_gid = line->group;
    result->st_rdev = line.DeviceNumber();
    result->st_blksize = 4096;
    return 0;
}

int StatxServed(const ServedLine& line, struct statx* result) {
    if (!line->present) return Fail(ENOENT);
    memset(result, 0, sizeof *result);
    result->stx_mask = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_GID;
    result->stx_mode = static_cast<__u16>(S_IFCHR | line->mode);
    result->stx_nlink = 1;
    result->stx_uid = line->owner;
    result->stx_gid = line->group;
    result->stx_rdev_major = major(line.DeviceNumber());
    result->stx_rdev_minor = minor(line.DeviceNumber());
    result->stx_blksize = 4096;
    return 0;
}

/// What the pseudo-terminal is told of settings meant for the line.
tcflag_t PlainCharacters(tcflag_t control) {
    return (control & ~tcflag_t{CSIZE | PARENB}) | CS8;
}

tcflag_t RememberedFlags(const ServedLine& line, tcflag_t control) {
    return (control & ~simulator::kLineFlags) | simulator::PackedLineFlags(line->settings);
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
    const std::uint64_t settings =
        simulator::PackSettings(control, input, BaudRateTaken(descriptor, control));
    if (settings == line->settings) return;
    line.Rendezvous();
    line->settings = settings;
}

/// Whether the port behind the descriptor has gone: every request then fails as on a real port.
bool IsHungUp(int descriptor) {
    int waiting = 0;
    return Next<::ioctl>("ioctl")(descriptor, FIONREAD, &waiting) != 0;
}

/// A port that has gone refuses by itself, for another reason.
bool IsRefused(const ServedLine& line, int descriptor, tcflag_t control) {
    const std::uint32_t refused = line->refusedSpeed;
    const bool cannotDo =
        refused == simulator::VirtualLineState::kEverySpeed || refused == (control & CBAUD);
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
    line->exclusive = exclusive;
    return 0;
}

/// Whether the request never reaches the pseudo-terminal, which would fail it after a hang-up.
bool IsAnsweredHere(unsigned long request) {
    switch (request) {
        case TIOCEXCL:
        case TIOCNXCL:
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
    switch (request) {
        case TCGETS:
            return GetKernelSettings(line, descriptor, request, argument, kPlainTermiosSize);
        case TCGETS2:
            return GetKernelSettings(line, descriptor, request, argument, sizeof(termios2));
        case TCSETS:
        case TCSETSW:
        case TCSETSF:
            return SetKernelSettings(line, descriptor, request, argument, kPlainTermiosSize);
        case TCSETS2:
        case TCSETSW2:
        case TCSETSF2:
            return SetKernelSettings(line, descriptor, request, argument, sizeof(termios2));
        case TIOCEXCL:
        case TIOCNXCL:
            return Claim(line, request == TIOCEXCL);
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

int OpenFlags(const char* mode) {
    const bool both = strchr(mode, '+') != nullptr;
    int flags = both ? O_RDWR : *mode == 'r' ? O_RDONLY : O_WRONLY;
    if (*mode == 'w') flags |= O_CREAT | O_TRUNC;
    if (*mode == 'a') flags |= O_CREAT | O_APPEND;
    if (strchr(mode, 'e')) flags |= O_CLOEXEC;
    if (strchr(mode, 'x')) flags |= O_EXCL;
    return flags;
}

FILE* OpenStream(const ServedLine& line, const char* mode) {
    const int descriptor = OpenServed(line, OpenFlags(mode));
    return descriptor < 0 ? nullptr : fdopen(descriptor, mode);
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeArgument(flags, arguments);
    va_end(arguments);
    return OpenAt(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeArgument(flags, arguments);
    va_end(arguments);
    if (const ServedLine line = ServedLine::AtPath(path)) return OpenServed(line, flags);
    return Next<::open64>("open64")(PassedOn(path), flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeArgument(flags, arguments);
    va_end(arguments);
    return OpenAt(directory, path, flags, mode);
}

int openat64(int directory, const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeArgument(flags, arguments);
    va_end(arguments);
    return OpenAt(directory, path, flags, mode);
}

// The four forms that programs compiled with fortified calls use.
int __open_2(const char* path, int flags) {
    return OpenAt(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
    return OpenAt(AT_FDCWD, path, flags, 0);
}
int __openat_2(int at, const char* path, int flags) {
    return OpenAt(at, path, flags, 0);
}
int __openat64_2(int at, const char* path, int flags) {
    return OpenAt(at, path, flags, 0);
}

FILE* fopen(const char* path, const char* mode) {
    if (const ServedLine line = ServedLine::AtPath(path)) return OpenStream(line, mode);
    return Next<::fopen>("fopen")(PassedOn(path), mode);
}

FILE* fopen64(const char* path, const char* mode) {
    if (const ServedLine line = ServedLine::AtPath(path)) return OpenStream(line, mode);
    return Next<::fopen64>("fopen64")(PassedOn(path), mode);
}

int access(const char* path, int mode) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return AccessServed(line, mode);
    return Next<::access>("access")(PassedOn(path), mode);
}

int faccessat(int directory, const char* path, int mode, int flags) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return AccessServed(line, mode);
    return Next<::faccessat>("faccessat")(directory, PassedOn(path), mode, flags);
}

int stat(const char* path, struct stat* result) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::stat>("stat")(PassedOn(path), result);
}

int stat64(const char* path, struct stat64* result) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::stat64>("stat64")(PassedOn(path), result);
}

int lstat(const char* path, struct stat* result) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::lstat>("lstat")(PassedOn(path), result);
}

int lstat64(const char* path, struct stat64* result) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::lstat64>("lstat64")(PassedOn(path), result);
}

int fstatat(int directory, const char* path, struct stat* result, int flags) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::fstatat>("fstatat")(directory, PassedOn(path), result, flags);
}

int fstatat64(int directory, const char* path, struct stat64* result, int flags) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatServed(line, result);
    return Next<::fstatat64>("fstatat64")(directory, PassedOn(path), result, flags);
}

int statx(int directory, const char* path, int flags, unsigned mask,
          struct statx* result) noexcept {
    if (const ServedLine line = ServedLine::AtPath(path)) return StatxServed(line, result);
    return Next<::statx>("statx")(directory, PassedOn(path), flags, mask, result);
}

/// A program that looks in /proc at what a process has open sees the device.
ssize_t readlink(const char* path, char* target, size_t size) noexcept {
    const ssize_t length = Next<::readlink>("readlink")(path, target, size);
    char device[PATH_MAX] = {};
    if (length <= 0 || static_cast<size_t>(length) >= sizeof device) return length;
    memcpy(device, target, static_cast<size_t>(length));
    const ServedLine line = ServedLine::AtTerminal(device);
    if (!line) return length;
    snprintf(device, sizeof device, "/dev/%s", line->name);
    const size_t shown = strlen(device) < size ? strlen(device) : size;
    memcpy(target, device, shown);
    return static_cast<ssize_t>(shown);
}

int unlink(const char* path) noexcept {
    return Next<::unlink>("unlink")(PassedOn(path));
}

int remove(const char* path) noexcept {
    return Next<::remove>("remove")(PassedOn(path));
}

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
