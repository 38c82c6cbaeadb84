#pragma once

#include <errno.h>

namespace simulator {

/// Restores errno. The search for a line must not change it, because the host's call may be passed
/// on.
class KeptErrno {
 public:
    KeptErrno() = default;
    KeptErrno(const KeptErrno&) = delete;
    KeptErrno& operator=(const KeptErrno&) = delete;
    ~KeptErrno() { errno = value_; }

 private:
    int value_ = errno;
};

}  // namespace simulator
