#include "simulator/line/ServedLine.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/futex.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <time.h>
#include <unistd.h>

#include "simulator/line/MappedLines.h"

namespace simulator {
namespace {

constexpr unsigned firstPtsMajor = 136;
constexpr unsigned lastPtsMajor = 143;
constexpr int patienceSteps = 50;
constexpr long patienceStepNanoseconds = 10'000'000;

/// What a host finds at every port when its bench has gone: none, rather than the real system's.
VirtualLineState unplugged;

/// The directory of served lines, or null when this program is not served at all.
const char* directory() {
    const char* name = getenv(virtualLinesVariable);
    return name && *name ? name : nullptr;
}

/// A system call of its own: open() here would come back through the redirection.
int openFile(const char* path, int flags) {
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags | O_CLOEXEC, 0));
}

bool isPort(const char* name) {
    size_t letters = 0;
    if (strncmp(name, "ttyS", 4) == 0) letters = 4;
    if (strncmp(name, "ttyUSB", 6) == 0) letters = 6;
    if (letters == 0 || name[letters] == '\0') return false;
    return strspn(name + letters, "0123456789") == strlen(name + letters);
}

/// The part of `path` behind `prefix`, or null when `path` does not begin with it.
const char* behind(const char* prefix, const char* path) {
    const size_t length = strlen(prefix);
    return strncmp(path, prefix, length) == 0 ? path + length : nullptr;
}

bool isServed(const char* name) {
    char file[PATH_MAX];
    snprintf(file, sizeof file, "%s/%s", directory(), name);
    return syscall(SYS_faccessat, AT_FDCWD, file, F_OK) == 0;
}

/// Restores errno: looking a line up must not be seen in a call that is then passed on.
class KeptErrno {
 public:
    KeptErrno() = default;
    KeptErrno(const KeptErrno&) = delete;
    KeptErrno& operator=(const KeptErrno&) = delete;
    ~KeptErrno() { errno = value_; }

 private:
    int value_ = errno;
};

bool hasGone(const char* path) {
    const KeptErrno kept;
    return syscall(SYS_faccessat, AT_FDCWD, path, F_OK) != 0 && errno == ENOENT;
}

/// "ttyS0", or "ttyS0.rmlock": who finds the lock file of a process that has died holds that second
/// one while it takes the first away.
bool isLockOfServedPort(const char* name) {
    char port[NAME_MAX + 1];
    snprintf(port, sizeof port, "%s", name);
    if (char* suffix = strstr(port, ".rmlock"); suffix && suffix[strlen(".rmlock")] == '\0')
        *suffix = '\0';
    return isPort(port) && isServed(port);
}

void waitWhileEqual(std::atomic<std::uint32_t>& word, std::uint32_t value) {
    const timespec step{0, patienceStepNanoseconds};
    syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), FUTEX_WAIT, value, &step);
}

/// Whether the line is plugged in and `node` is the very terminal that carries its bytes now.
bool isTerminalOf(const VirtualLineState& state, unsigned number, const struct stat& node) {
    return state.present && state.ptsNumber == number &&
           state.ptsCreated == nanoseconds(node.st_ctim);
}

}  // namespace

ServedLine ServedLine::atPath(const char* path) {
    const char* name = path && directory() ? behind("/dev/", path) : nullptr;
    if (!name || !isPort(name)) return ServedLine(nullptr);
    if (hasGone(directory())) return ServedLine(&unplugged, true);
    return ServedLine(name);
}

ServedLine ServedLine::ofDescriptor(int descriptor) {
    const KeptErrno kept;
    struct stat node = {};
    if (!directory() || fstat(descriptor, &node) != 0 || !S_ISCHR(node.st_mode))
        return ServedLine(nullptr);
    if (major(node.st_rdev) < firstPtsMajor || major(node.st_rdev) > lastPtsMajor)
        return ServedLine(nullptr);
    const unsigned number = (major(node.st_rdev) - firstPtsMajor) * 256 + minor(node.st_rdev);
    VirtualLineState* noted = mappedLines::notedFor(number);
    if (noted && isTerminalOf(*noted, number, node)) return ServedLine(noted, true);
    char link[32];
    snprintf(link, sizeof link, "pts%u", number);
    ServedLine line(link);
    if (line.isKept_) mappedLines::note(number, line.state_);
    return line;
}

ServedLine ServedLine::atTerminal(const char* path) {
    const char* number = directory() ? behind("/dev/pts/", path) : nullptr;
    if (!number || *number == '\0' || number[strspn(number, "0123456789")] != '\0')
        return ServedLine(nullptr);
    char link[32];
    snprintf(link, sizeof link, "pts%s", number);
    return ServedLine(link);
}

bool ServedLine::redirectsLock(const char* path, char* redirected, size_t size) {
    const KeptErrno kept;
    if (!path || !directory()) return false;
    const char* rest = behind("/var/lock", path);
    if (!rest) rest = behind("/run/lock", path);
    if (!rest) return false;
    if (*rest == '\0' || strcmp(rest, "/") == 0) {
        snprintf(redirected, size, "%s", directory());
        return true;
    }
    const char* name = behind("/LCK..", rest);
    if (!name || !isLockOfServedPort(name)) return false;
    snprintf(redirected, size, "%s/LCK..%s", directory(), name);
    return true;
}

ServedLine::ServedLine(const char* fileName) {
    const KeptErrno kept;
    if (!fileName) return;
    char file[PATH_MAX];
    snprintf(file, sizeof file, "%s/%s", directory(), fileName);
    const int descriptor = openFile(file, O_RDWR);
    if (descriptor < 0) return;
    const mappedLines::Mapping mapping = mappedLines::ofFile(descriptor);
    close(descriptor);
    state_ = mapping.state;
    isKept_ = mapping.isKept;
}

ServedLine::ServedLine(ServedLine&& other) noexcept : state_(other.state_), isKept_(other.isKept_) {
    other.state_ = nullptr;
}

ServedLine::~ServedLine() {
    if (!state_ || isKept_) return;
    const KeptErrno kept;
    munmap(state_, sizeof *state_);
}

dev_t ServedLine::deviceNumber() const {
    const char* usb = behind("ttyUSB", state_->name);
    const auto number = static_cast<unsigned>(atoi(usb ? usb : behind("ttyS", state_->name)));
    return usb ? makedev(188, number) : makedev(4, 64 + number);
}

bool ServedLine::ring() const {
    char bell[PATH_MAX];
    snprintf(bell, sizeof bell, "%s/%s.bell", directory(), state_->name);
    const int descriptor = openFile(bell, O_WRONLY | O_NONBLOCK);
    if (descriptor < 0) return false;
    const bool rung = write(descriptor, "!", 1) == 1 || errno == EAGAIN;
    close(descriptor);
    return rung;
}

void ServedLine::rendezvous() const {
    const KeptErrno kept;
    const std::uint32_t ticket = ++state_->requests;
    if (!ring()) return;
    for (int step = 0; step < patienceSteps; ++step) {
        const std::uint32_t seen = state_->acknowledged;
        if (static_cast<std::int32_t>(seen - ticket) >= 0) return;
        waitWhileEqual(state_->acknowledged, seen);
    }
}

bool ServedLine::staysExclusive() const {
    const KeptErrno kept;
    if (!state_->exclusive) return false;
    rendezvous();
    return state_->exclusive;
}

}  // namespace simulator
