#pragma once

#include <limits.h>
#include <stddef.h>

namespace simulator {

/// Which paths of a host belong to served ports, and the paths that replace them. Uses the C
/// library only. Where a function of the C library would be redirected itself, it makes the system
/// call directly.
namespace hostpaths {

/// The directory of lines, or null when this program is not served at all.
const char* Directory();

/// Whether the bench has ended and its directory is removed.
bool HasBenchGone();

/// The part of `path` after `prefix`, or null when `path` does not begin with `prefix`.
const char* Behind(const char* prefix, const char* path);

/// Whether `name` is the name of a simulated port: one that is served, or was served until the
/// bench ended.
bool IsTaken(const char* name);

/// The name of the port that is meant by "/dev/ttyUSB0", and null for all other paths.
const char* PortAt(const char* path);

/// The same, also by a name below /dev/serial, which is a link; uses `buffer` of `size` bytes.
const char* PortBehind(const char* path, char* buffer, size_t size);

/// If `path` is that of a file of a served port, such as its lock file or its entries in /sys,
/// writes the path of the real file to `redirected`, which has PATH_MAX bytes. Returns false for
/// all other paths.
bool Redirects(const char* path, char* redirected);

/// Whether served ports may have entries in this directory, beside /dev itself.
bool MayHaveEntries(const char* directory);

/// Writes the path at which the entries of served ports for this directory are.
void EntriesBelow(const char* directory, char* path);

/// Removes the directory of served ports from the path, so that it is the path that the host knows.
/// Returns whether there was something to remove.
bool BecomesHostPath(char* path);

/// Writes the path, as the host knows it, of the file open at `descriptor`. Returns false when
/// there is no file, or not enough room.
bool PathOf(int descriptor, char* path, size_t size);

}  // namespace hostpaths

/// A path that is given to a call, at a directory or at AT_FDCWD.
class HostPath {
 public:
    HostPath(int directory, const char* path);

    /// The path, made absolute if it belongs to served ports and was relative to a directory.
    operator const char*() const { return path_; }

 private:
    static constexpr size_t kLongest = 512;  ///< paths of ports are short

    char whole_[kLongest];
    const char* path_;
};

}  // namespace simulator
