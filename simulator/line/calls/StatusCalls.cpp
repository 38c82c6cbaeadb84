// The calls that ask whether a device is there, whose it is and who may open it. A served device
// has a node as on a real system, although there is none.

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "simulator/line/ServedLine.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/PassedOn.h"

using simulator::ServedLine;
using namespace simulator::calls;

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

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

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

}  // extern "C"
#pragma GCC visibility pop
