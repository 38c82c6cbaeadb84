// The calls that open a port. A served device opens as the pseudo-terminal behind it.

#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <termios.h>
#include <unistd.h>

#include "simulator/line/HostPaths.h"
#include "simulator/line/ServedLine.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/PassedOn.h"

using simulator::HostPath;
using simulator::ServedLine;
using namespace simulator::calls;

namespace {

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
    const HostPath host(directory, path);
    const bool isNode = (flags & O_NOFOLLOW) != 0;
    if (const ServedLine line = isNode ? ServedLine::AtNode(host) : ServedLine::AtPath(host))
        return OpenServed(line, flags);
    return Next<::openat64>("openat64")(directory, PassedOn(host, path), flags, mode);
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
    return OpenAt(AT_FDCWD, path, flags, mode);
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
    return Next<::fopen>("fopen")(PassedOn(HostPath(AT_FDCWD, path), path), mode);
}

FILE* fopen64(const char* path, const char* mode) {
    if (const ServedLine line = ServedLine::AtPath(path)) return OpenStream(line, mode);
    return Next<::fopen64>("fopen64")(PassedOn(HostPath(AT_FDCWD, path), path), mode);
}

}  // extern "C"
#pragma GCC visibility pop
