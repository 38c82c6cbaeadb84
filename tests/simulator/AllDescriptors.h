#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <vector>

/// Takes all descriptors that the process may have, but so many, for as long as it lives.
class AllDescriptors {
 public:
    explicit AllDescriptors(int free = 0) {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit few = {Highest() + 1, before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
        for (int taken = Take(); taken >= 0; taken = Take())
            taken_.push_back(taken);
        for (; free > 0; --free) {
            ::close(taken_.back());
            taken_.pop_back();
        }
    }
    ~AllDescriptors() {
        for (const int taken : taken_)
            ::close(taken);
        ::setrlimit(RLIMIT_NOFILE, &before_);
    }
    AllDescriptors(const AllDescriptors&) = delete;
    AllDescriptors& operator=(const AllDescriptors&) = delete;

 private:
    static int Take() { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); }
    static rlim_t Highest() {
        const int next = Take();
        ::close(next);
        return static_cast<rlim_t>(next) + 32;
    }

    rlimit before_ = {};
    std::vector<int> taken_;
};
