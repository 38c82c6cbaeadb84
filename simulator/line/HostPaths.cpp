#include "simulator/line/HostPaths.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/stat.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <initializer_list>

#include "simulator/line/KeptErrno.h"
#include "simulator/line/VirtualLineState.h"

namespace simulator {
namespace hostpaths {
namespace {

bool IsPort(const char* name) {
    size_t letters = 0;
    if (strncmp(name, "ttyS", 4) == 0) letters = 4;
    if (strncmp(name, "ttyUSB", 6) == 0) letters = 6;
    if (letters == 0 || name[letters] == '\0') return false;
    return strspn(name + letters, "0123456789") == strlen(name + letters);
}

bool Exists(const char* path) {
    return syscall(SYS_faccessat, AT_FDCWD, path, F_OK) == 0;
}

/// What is at the path itself, as in st_mode; 0 for nothing.
unsigned KindOf(const char* path) {
    struct statx found = {};
    const long result = syscall(SYS_statx, AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, STATX_TYPE, &found);
    return result == 0 ? found.stx_mode & S_IFMT : 0;
}

bool IsServed(const char* name) {
    char file[PATH_MAX];
    snprintf(file, sizeof file, "%s/%s", Directory(), name);
    return Exists(file);
}

/// "ttyS0", or "ttyS0.rmlock": who finds the lock file of a process that has died holds that second
/// one while it takes the first away.
bool IsLockOfServedPort(const char* name) {
    char port[NAME_MAX + 1];
    snprintf(port, sizeof port, "%s", name);
    if (char* suffix = strstr(port, ".rmlock"); suffix && suffix[strlen(".rmlock")] == '\0')
        *suffix = '\0';
    return IsPort(port) && IsServed(port);
}

bool RedirectsLock(const char* path, char* redirected) {
    const char* rest = Behind("/var/lock", path);
    if (!rest) rest = Behind("/run/lock", path);
    if (!rest) return false;
    if (*rest == '\0' || strcmp(rest, "/") == 0) {
        snprintf(redirected, PATH_MAX, "%s", Directory());
        return true;
    }
    const char* name = Behind("/LCK..", rest);
    if (!name || !IsLockOfServedPort(name)) return false;
    snprintf(redirected, PATH_MAX, "%s/LCK..%s", Directory(), name);
    return true;
}

/// Whether the path is "/sys/class/tty/ttyUSB0", or leads on from it, and the port is not the real
/// system's.
bool BelongsToTakenPort(const char* path) {
    const char* name = Behind("/sys/class/tty/", path);
    if (!name) return false;
    char port[NAME_MAX + 1];
    const size_t length = strcspn(name, "/");
    if (length >= sizeof port) return false;
    memcpy(port, name, length);
    port[length] = '\0';
    return IsTaken(port);
}

/// A directory that the system has, too, is the system's; its list shows both.
bool RedirectsEntry(const char* path, char* redirected) {
    if (!MayHaveEntries(path)) return false;
    EntriesBelow(path, redirected);
    if (BelongsToTakenPort(path)) return true;
    const unsigned kind = KindOf(redirected);
    return kind != 0 && !(kind == S_IFDIR && Exists(path));
}

/// The name at the end of a link.
const char* LinkedName(const char* link, char* buffer, size_t size) {
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, buffer, size - 1);
    if (length <= 0) return nullptr;
    buffer[length] = '\0';
    const char* slash = strrchr(buffer, '/');
    return slash ? slash + 1 : buffer;
}

}  // namespace

const char* Directory() {
    const char* name = getenv(kVirtualLinesVariable);
    return name && *name ? name : nullptr;
}

bool HasBenchGone() {
    const KeptErrno kept;
    return !Exists(Directory()) && errno == ENOENT;
}

const char* Behind(const char* prefix, const char* path) {
    const size_t length = strlen(prefix);
    return strncmp(path, prefix, length) == 0 ? path + length : nullptr;
}

bool IsTaken(const char* name) {
    const KeptErrno kept;
    return Directory() != nullptr && IsPort(name) && (IsServed(name) || HasBenchGone());
}

const char* PortAt(const char* path) {
    const char* name = path && Directory() ? Behind("/dev/", path) : nullptr;
    return name && IsPort(name) ? name : nullptr;
}

const char* PortBehind(const char* path, char* buffer, size_t size) {
    if (!path || !Directory() || !Behind("/dev/serial/", path)) return PortAt(path);
    const KeptErrno kept;
    char ours[PATH_MAX];
    EntriesBelow(path, ours);
    const char* name = LinkedName(ours, buffer, size);
    if (!name) name = LinkedName(path, buffer, size);
    return name && IsPort(name) ? name : nullptr;
}

bool Redirects(const char* path, char* redirected) {
    const KeptErrno kept;
    if (!path || !Directory()) return false;
    return RedirectsLock(path, redirected) || RedirectsEntry(path, redirected);
}

bool MayHaveEntries(const char* path) {
    for (const char* place : {"/sys", "/dev/serial", "/run/udev/data"}) {
        const char* rest = Behind(place, path);
        if (rest && (*rest == '\0' || *rest == '/')) return true;
    }
    return false;
}

void EntriesBelow(const char* directory, char* path) {
    snprintf(path, PATH_MAX, "%s/%s%s", Directory(), kSystemEntries, directory);
}

bool BecomesHostPath(char* path) {
    const char* rest = Directory() ? Behind(Directory(), path) : nullptr;
    if (rest) rest = Behind("/", rest);
    if (rest) rest = Behind(kSystemEntries, rest);
    if (!rest || *rest != '/') return false;
    memmove(path, rest, strlen(rest) + 1);
    return true;
}

bool PathOf(int descriptor, char* path, size_t size) {
    const KeptErrno kept;
    char link[32];
    snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, size);
    if (length <= 0 || static_cast<size_t>(length) >= size) return false;
    path[length] = '\0';
    return *path == '/';
}

}  // namespace hostpaths

/// What is among the entries of served ports is found there, and by whoever removes them, too.
HostPath::HostPath(int directory, const char* path) : path_(path) {
    if (!path || *path == '/' || *path == '\0' || directory == AT_FDCWD || !hostpaths::Directory())
        return;
    if (!hostpaths::PathOf(directory, whole_, sizeof whole_) || hostpaths::BecomesHostPath(whole_))
        return;
    const size_t length = strcmp(whole_, "/") == 0 ? 0 : strlen(whole_);
    const int rest = snprintf(whole_ + length, sizeof whole_ - length, "/%s", path);
    if (static_cast<size_t>(rest) < sizeof whole_ - length) path_ = whole_;
}

}  // namespace simulator
