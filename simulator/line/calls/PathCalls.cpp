// The calls that read links and remove files.

#include <limits.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "simulator/line/ServedLine.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/PassedOn.h"

using simulator::ServedLine;
using namespace simulator::calls;

#pragma GCC visibility push(default)
extern "C" {

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

}  // extern "C"
#pragma GCC visibility pop
