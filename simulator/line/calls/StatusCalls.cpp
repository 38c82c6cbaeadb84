// The calls that ask whether a device is there, whose it is and who may open it. A served device
// has a node as on a real system, although there is none.

#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "simulator/line/HostPaths.h"
#include "simulator/line/ServedLine.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/PassedOn.h"

using simulator::HostPath;
using simulator::ServedLine;
using namespace simulator::calls;
namespace hostpaths = simulator::hostpaths;

namespace {

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

int StatServed(const ServedLine& line, struct statx* result) {
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

ServedLine LineAt(const HostPath& path, int flags) {
    return (flags & AT_SYMLINK_NOFOLLOW) ? ServedLine::AtNode(path) : ServedLine::AtPath(path);
}

/// What stat and its kin say of a path; `next` asks the system.
template <typename Stat, typename Function>
int StatusOf(int directory, const char* path, int flags, Stat* result, Function next) {
    const HostPath host(directory, path);
    if (const ServedLine line = LineAt(host, flags)) return StatServed(line, result);
    return next(PassedOn(host, path));
}

template <typename Function>
int AccessTo(int directory, const char* path, int mode, int flags, Function next) {
    const HostPath host(directory, path);
    if (const ServedLine line = LineAt(host, flags)) return AccessServed(line, mode);
    return next(PassedOn(host, path));
}

/// Whether something of /sys is open that is an entry of a served port.
bool IsEntryOfSys(int descriptor) {
    char path[PATH_MAX];
    return hostpaths::Directory() != nullptr && hostpaths::PathOf(descriptor, path, sizeof path) &&
           hostpaths::BecomesHostPath(path) && hostpaths::Behind("/sys", path) != nullptr;
}

/// libudev takes nothing for a device that is on another file system than those of the system.
template <typename About>
int FileSystemOf(int descriptor, About* about, int result) {
    if (result == 0 && IsEntryOfSys(descriptor)) about->f_type = SYSFS_MAGIC;
    return result;
}

/// A served node has no further attributes.
template <typename Function>
ssize_t AttributeOf(const char* path, int flags, Function next) {
    const HostPath host(AT_FDCWD, path);
    if (const ServedLine line = LineAt(host, flags)) return Fail(line->present ? ENOTSUP : ENOENT);
    return next(PassedOn(host, path));
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int access(const char* path, int mode) noexcept {
    return AccessTo(AT_FDCWD, path, mode, 0,
                    [&](const char* passed) { return Next<::access>("access")(passed, mode); });
}

int faccessat(int directory, const char* path, int mode, int flags) noexcept {
    return AccessTo(directory, path, mode, flags, [&](const char* passed) {
        return Next<::faccessat>("faccessat")(directory, passed, mode, flags);
    });
}

int stat(const char* path, struct stat* result) noexcept {
    return StatusOf(AT_FDCWD, path, 0, result,
                    [&](const char* passed) { return Next<::stat>("stat")(passed, result); });
}

int stat64(const char* path, struct stat64* result) noexcept {
    return StatusOf(AT_FDCWD, path, 0, result,
                    [&](const char* passed) { return Next<::stat64>("stat64")(passed, result); });
}

int lstat(const char* path, struct stat* result) noexcept {
    return StatusOf(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, result,
                    [&](const char* passed) { return Next<::lstat>("lstat")(passed, result); });
}

int lstat64(const char* path, struct stat64* result) noexcept {
    return StatusOf(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, result,
                    [&](const char* passed) { return Next<::lstat64>("lstat64")(passed, result); });
}

int fstatat(int directory, const char* path, struct stat* result, int flags) noexcept {
    return StatusOf(directory, path, flags, result, [&](const char* passed) {
        return Next<::fstatat>("fstatat")(directory, passed, result, flags);
    });
}

int fstatat64(int directory, const char* path, struct stat64* result, int flags) noexcept {
    return StatusOf(directory, path, flags, result, [&](const char* passed) {
        return Next<::fstatat64>("fstatat64")(directory, passed, result, flags);
    });
}

int statx(int directory, const char* path, int flags, unsigned mask,
          struct statx* result) noexcept {
    return StatusOf(directory, path, flags, result, [&](const char* passed) {
        return Next<::statx>("statx")(directory, passed, flags, mask, result);
    });
}

// What programs and libraries call that were built before glibc 2.33; the number names a layout, of
// which there is one.
int __xstat(int /*layout*/, const char* path, struct stat* result) {
    return stat(path, result);
}
int __xstat64(int /*layout*/, const char* path, struct stat64* result) {
    return stat64(path, result);
}
int __lxstat(int /*layout*/, const char* path, struct stat* result) {
    return lstat(path, result);
}
int __lxstat64(int /*layout*/, const char* path, struct stat64* result) {
    return lstat64(path, result);
}
int __fxstatat(int /*layout*/, int directory, const char* path, struct stat* result, int flags) {
    return fstatat(directory, path, result, flags);
}
int __fxstatat64(int /*layout*/, int directory, const char* path, struct stat64* result,
                 int flags) {
    return fstatat64(directory, path, result, flags);
}

int fstatfs(int descriptor, struct statfs* about) noexcept {
    return FileSystemOf(descriptor, about, Next<::fstatfs>("fstatfs")(descriptor, about));
}

int fstatfs64(int descriptor, struct statfs64* about) noexcept {
    return FileSystemOf(descriptor, about, Next<::fstatfs64>("fstatfs64")(descriptor, about));
}

ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    return AttributeOf(path, 0, [&](const char* passed) {
        return Next<::getxattr>("getxattr")(passed, name, value, size);
    });
}

ssize_t lgetxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    return AttributeOf(path, AT_SYMLINK_NOFOLLOW, [&](const char* passed) {
        return Next<::lgetxattr>("lgetxattr")(passed, name, value, size);
    });
}

}  // extern "C"
#pragma GCC visibility pop
