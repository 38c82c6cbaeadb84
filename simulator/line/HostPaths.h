#pragma once

#include <limits.h>
#include <stddef.h>

namespace simulator {

/// Which paths of a host concern served ports, and what stands for them. Uses nothing but the C
/// library, and system calls of its own where the C library's would come back through the
/// redirection.
namespace hostpaths {

/// The directory of lines, or null when this program is not served at all.
const char* Directory();

/// Whether the bench has ended, and its directory with it.
bool HasBenchGone();

/// The part of `path` behind `prefix`, or null when `path` does not begin with it.
const char* Behind(const char* prefix, const char* path);

/// Whether `name` is the name of a port that the real system does not have here: it is served, or
/// was until the bench ended.
bool IsTaken(const char* name);

/// The name of the port that is meant by "/dev/ttyUSB0", and null for all other paths.
const char* PortAt(const char* path);

/// The same, also by a name below /dev/serial, which is a link; uses `buffer` of `size` bytes.
const char* PortBehind(const char* path, char* buffer, size_t size);

/// Writes the path that stands for `path` to `redirected`, of PATH_MAX bytes: that of a file of a
/// served port, such as its lock file and its entries in /sys. Returns false for all other paths.
bool Redirects(const char* path, char* redirected);

/// Whether served ports may have entries in this directory, beside /dev itself.
bool MayHaveEntries(const char* directory);

/// Writes the path at which the entries of served ports for this directory are.
void EntriesBelow(const char* directory, char* path);

/// Takes away what leads to the entries of served ports: what remains is the path as the host knows
/// it. Returns whether there was something to take away.
bool BecomesHostPath(char* path);

/// Writes the path, as the host knows it, of what is open at `descriptor`; false when there is none
/// or not enough room.
bool PathOf(int descriptor, char* path, size_t size);

}  // namespace hostpaths

/// A path that is given to a call, at a directory or at AT_FDCWD.
class HostPath {
 public:
    HostPath(int directory, const char* path);

    /// As far as it concerns served ports: whole where it was relative to a directory.
    operator const char*() const { return path_; }

 private:
    static constexpr size_t kLongest = 512;  ///< paths of ports are short

    char whole_[kLongest];
    const char* path_;
};

}  // namespace simulator
