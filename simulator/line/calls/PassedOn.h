#pragma once

#include <limits.h>

#include "simulator/line/HostPaths.h"

namespace simulator::calls {

/// A path to pass on to the C library. The files of a served port are below the directory of lines.
class PassedOn {
 public:
    /// `path` is what the host has given. The object holds the path that replaces it.
    PassedOn(const HostPath& host, const char* path)
        : path_(hostpaths::Redirects(host, redirected_) ? redirected_ : path) {}
    operator const char*() const { return path_; }

 private:
    char redirected_[PATH_MAX];
    const char* path_;
};

}  // namespace simulator::calls
