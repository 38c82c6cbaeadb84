#include "marlet-small.h"

#include <cerrno>
#include <cstdint>
#include <ctime>

namespace {

constexpr long kNanosecondsPerMillisecond = 1'000'000;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

timespec MonotonicNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

}  // namespace

void Sleep(int ms) {
    if (ms <= 0) return;
    // An absolute end, so that resuming after a signal adds nothing to the time.
    timespec end = MonotonicNow();
    end.tv_sec += ms / 1000;
    end.tv_nsec += (ms % 1000) * kNanosecondsPerMillisecond;
    if (end.tv_nsec >= kNanosecondsPerSecond) {
        end.tv_nsec -= kNanosecondsPerSecond;
        ++end.tv_sec;
    }
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

unsigned int GetTickCount(void) {
    const timespec now = MonotonicNow();
    const std::uint64_t milliseconds =
        static_cast<std::uint64_t>(now.tv_sec) * 1000 +
        static_cast<std::uint64_t>(now.tv_nsec / kNanosecondsPerMillisecond);
    return static_cast<unsigned int>(milliseconds);
}
