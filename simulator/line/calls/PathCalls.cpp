// The calls that read links, resolve paths, change the directory and remove files.

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
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

/// A path as the system has it becomes the host's: a terminal is its device, the entries of a
/// served port are in /sys.
bool Translate(char* path) {
    if (const ServedLine line = ServedLine::AtTerminal(path)) {
        snprintf(path, PATH_MAX, "/dev/%s", line->name);
        return true;
    }
    return hostpaths::BecomesHostPath(path);
}

/// A program that looks in /proc at what a process has open sees the device.
ssize_t TranslateLink(ssize_t length, char* target, size_t size) {
    char path[PATH_MAX];
    if (length <= 0 || static_cast<size_t>(length) >= sizeof path) return length;
    memcpy(path, target, static_cast<size_t>(length));
    path[length] = '\0';
    if (!Translate(path)) return length;
    const size_t shown = strnlen(path, size);
    memcpy(target, path, shown);
    return static_cast<ssize_t>(shown);
}

ssize_t ReadLink(int directory, const char* path, char* target, size_t size) {
    const HostPath host(directory, path);
    if (const ServedLine line = ServedLine::AtNode(host))
        return Fail(line->present ? EINVAL : ENOENT);
    const ssize_t length =
        Next<::readlinkat>("readlinkat")(directory, PassedOn(host, path), target, size);
    return TranslateLink(length, target, size);
}

/// As realpath: room that is not given is the C library's.
char* Given(const char* path, char* room) {
    return room ? strcpy(room, path) : strdup(path);
}

char* RealPath(const char* path, char* room) {
    const HostPath host(AT_FDCWD, path);
    char found[PATH_MAX];
    if (const ServedLine line = ServedLine::AtPath(host)) {
        if (!line->present) {
            errno = ENOENT;
            return nullptr;
        }
        snprintf(found, sizeof found, "/dev/%s", line->name);
        return Given(found, room);
    }
    const PassedOn passed(host, path);
    if (static_cast<const char*>(passed) == path) return Next<::realpath>("realpath")(path, room);
    if (!Next<::realpath>("realpath")(passed, found)) return nullptr;
    Translate(found);
    return Given(found, room);
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

ssize_t readlink(const char* path, char* target, size_t size) noexcept {
    return ReadLink(AT_FDCWD, path, target, size);
}

ssize_t readlinkat(int directory, const char* path, char* target, size_t size) noexcept {
    return ReadLink(directory, path, target, size);
}

char* realpath(const char* path, char* room) noexcept {
    return RealPath(path, room);
}

char* canonicalize_file_name(const char* path) noexcept {
    return RealPath(path, nullptr);
}

// The three forms that programs compiled with fortified calls use.
ssize_t __readlink_chk(const char* path, char* target, size_t size, size_t /*room*/) {
    return ReadLink(AT_FDCWD, path, target, size);
}
ssize_t __readlinkat_chk(int directory, const char* path, char* target, size_t size,
                         size_t /*room*/) {
    return ReadLink(directory, path, target, size);
}
char* __realpath_chk(const char* path, char* room, size_t /*size*/) {
    return RealPath(path, room);
}

int chdir(const char* path) noexcept {
    return Next<::chdir>("chdir")(PassedOn(HostPath(AT_FDCWD, path), path));
}

int unlink(const char* path) noexcept {
    return Next<::unlink>("unlink")(PassedOn(HostPath(AT_FDCWD, path), path));
}

int remove(const char* path) noexcept {
    return Next<::remove>("remove")(PassedOn(HostPath(AT_FDCWD, path), path));
}

}  // extern "C"
#pragma GCC visibility pop
