#pragma once

#include <signal.h>

namespace simulator {

/// While it lives, threads are started without signals: these are for the thread that starts them,
/// and a write to a pipe that nobody reads fails, rather than ending the process.
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
