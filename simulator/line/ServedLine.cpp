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

#include "simulator/line/HostPaths.h"
#include "simulator/line/KeptErrno.h"
#include "simulator/line/MappedLines.h"

namespace simulator {
namespace {

using hostpaths::Directory;

constexpr unsigned kFirstPtsMajor = 136;
constexpr unsigned kLastPtsMajor = 143;
constexpr int kPatienceSteps = 50;
constexpr long kPatienceStepNanoseconds = 10'000'000;

/// What a host finds at every port when its bench has gone: none, rather than the real system's.
VirtualLineState unplugged;

/// A system call of its own: open() here would come back through the redirection.
int OpenFile(const char* path, int flags) {
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags | O_CLOEXEC, 0));
}

void WaitWhileEqual(std::atomic<std::uint32_t>& word, std::uint32_t value) {
    const timespec step{0, kPatienceStepNanoseconds};
    syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), FUTEX_WAIT, value, &step);
}

/// Whether the line is plugged in and `node` is the very terminal that carries its bytes now.
bool IsTerminalOf(const VirtualLineState& state, unsigned number, const struct stat& node) {
    return state.present != 0 && state.ptsNumber == number &&
           state.ptsCreated == Nanoseconds(node.st_ctim);
}

}  // namespace

ServedLine ServedLine::AtNode(const char* path) {
    return Called(hostpaths::PortAt(path));
}

ServedLine ServedLine::AtPath(const char* path) {
    char name[NAME_MAX + 1];
    return Called(hostpaths::PortBehind(path, name, sizeof name));
}

ServedLine ServedLine::Called(const char* name) {
    if (name && hostpaths::HasBenchGone()) return ServedLine(&unplugged, true);
    return ServedLine(name);
}

ServedLine ServedLine::OfDescriptor(int descriptor) {
    const KeptErrno kept;
    struct stat node = {};
    if (!Directory() || fstat(descriptor, &node) != 0 || !S_ISCHR(node.st_mode))
        return ServedLine(nullptr);
    if (major(node.st_rdev) < kFirstPtsMajor || major(node.st_rdev) > kLastPtsMajor)
        return ServedLine(nullptr);
    const unsigned number = (major(node.st_rdev) - kFirstPtsMajor) * 256 + minor(node.st_rdev);
    VirtualLineState* noted = mappedlines::NotedFor(number);
    if (noted && IsTerminalOf(*noted, number, node)) return ServedLine(noted, true);
    char link[32];
    snprintf(link, sizeof link, "pts%u", number);
    ServedLine line(link);
    if (line.isKept_) mappedlines::Note(number, line.state_);
    return line;
}

ServedLine ServedLine::AtTerminal(const char* path) {
    const char* number = Directory() ? hostpaths::Behind("/dev/pts/", path) : nullptr;
    if (!number || *number == '\0' || number[strspn(number, "0123456789")] != '\0')
        return ServedLine(nullptr);
    char link[32];
    snprintf(link, sizeof link, "pts%s", number);
    return ServedLine(link);
}

ServedLine::ServedLine(const char* fileName) {
    const KeptErrno kept;
    if (!fileName) return;
    char file[PATH_MAX];
    snprintf(file, sizeof file, "%s/%s", Directory(), fileName);
    const int descriptor = OpenFile(file, O_RDWR);
    if (descriptor < 0) return;
    const mappedlines::Mapping mapping = mappedlines::OfFile(descriptor);
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

dev_t ServedLine::DeviceNumber() const {
    const PortNumber number = PortNumberOf(state_->name);
    return makedev(number.major, number.minor);
}

bool ServedLine::Ring() const {
    char bell[PATH_MAX];
    snprintf(bell, sizeof bell, "%s/%s.bell", Directory(), state_->name);
    const int descriptor = OpenFile(bell, O_WRONLY | O_NONBLOCK);
    if (descriptor < 0) return false;
    const bool rung = write(descriptor, "!", 1) == 1 || errno == EAGAIN;
    close(descriptor);
    return rung;
}

void ServedLine::Rendezvous() const {
    const KeptErrno kept;
    const std::uint32_t ticket = ++state_->requests;
    if (!Ring()) return;
    for (int step = 0; step < kPatienceSteps; ++step) {
        const std::uint32_t seen = state_->acknowledged;
        if (static_cast<std::int32_t>(seen - ticket) >= 0) return;
        WaitWhileEqual(state_->acknowledged, seen);
    }
}

bool ServedLine::StaysExclusive() const {
    const KeptErrno kept;
    if (!state_->exclusive) return false;
    Rendezvous();
    return state_->exclusive != 0;
}

}  // namespace simulator
