#pragma once

#include <limits.h>

#include "simulator/line/HostPaths.h"

namespace simulator::calls {

/// A path to pass on: the files of a served port lie below the directory of lines.
class PassedOn {
 public:
    /// `path` as the host has given it, and what it stands for.
    PassedOn(const HostPath& host, const char* path)
        : path_(hostpaths::Redirects(host, redirected_) ? redirected_ : path) {}
    operator const char*() const { return path_; }

 private:
    char redirected_[PATH_MAX];
    const char* path_;
};

}  // namespace simulator::calls
