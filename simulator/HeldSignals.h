#pragma once

#include <signal.h>

namespace simulator {

/// While an object exists, this thread blocks signals. The threads that it starts in this time keep
/// the signals blocked, so signals reach this thread only. In those threads a write to a pipe that
/// nobody reads fails; it does not end the process.
class HeldSignals {
 public:
    HeldSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

 private:
    sigset_t before_;
};

}  // namespace simulator
