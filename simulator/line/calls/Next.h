#pragma once

#include <dlfcn.h>
#include <errno.h>

#include <atomic>

namespace simulator::calls {

/// The function of the C library, or of the next preloaded object, that `replaced` takes the place
/// of.
template <auto& replaced>
auto Next(const char* name) {
    static std::atomic<decltype(&replaced)> found{nullptr};
    if (!found) found = reinterpret_cast<decltype(&replaced)>(dlsym(RTLD_NEXT, name));
    return found.load();
}

inline int Fail(int error) {
    errno = error;
    return -1;
}

}  // namespace simulator::calls
