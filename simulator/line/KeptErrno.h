#pragma once

#include <errno.h>

namespace simulator {

/// Restores errno: looking a line up must not be seen in a call that is then passed on.
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
