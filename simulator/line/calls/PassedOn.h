#pragma once

#include <limits.h>

#include "simulator/line/ServedLine.h"

namespace simulator::calls {

/// A path to pass on: the lock file of a served device lies beside the line's state.
class PassedOn {
 public:
    explicit PassedOn(const char* path)
        : path_(ServedLine::RedirectsLock(path, redirected_, sizeof redirected_) ? redirected_
                                                                                 : path) {}
    operator const char*() const { return path_; }

 private:
    char redirected_[PATH_MAX];
    const char* path_;
};

}  // namespace simulator::calls
