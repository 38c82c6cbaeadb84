#include "marlet-small.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <chrono>
#include <climits>
#include <csignal>

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

milliseconds TimeOfSleep(int ms) {
    const auto start = steady_clock::now();
    Sleep(ms);
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
}

volatile std::sig_atomic_t alarms = 0;

/// A signal every 5 ms, each of which interrupts what the thread waits for.
class Alarms {
 public:
    Alarms() {
        alarms = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { alarms = alarms + 1; };
        sigaction(SIGALRM, &action, &saved_);
        const itimerval every = {{0, 5000}, {0, 5000}};
        setitimer(ITIMER_REAL, &every, nullptr);
    }
    ~Alarms() {
        const itimerval never = {};
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &saved_, nullptr);
    }
    Alarms(const Alarms&) = delete;
    Alarms& operator=(const Alarms&) = delete;

 private:
    struct sigaction saved_ = {};
};

TEST(Sleep, Lasts_at_least_as_long_as_asked) {
    EXPECT_GE(TimeOfSleep(1), milliseconds(1));
    EXPECT_GE(TimeOfSleep(50), milliseconds(50));
}

// Started at almost any time within a second, 999 ms end in the next one.
TEST(Sleep, Carries_from_nanoseconds_and_milliseconds_to_seconds) {
    EXPECT_GE(TimeOfSleep(1999), milliseconds(1999));
}

// A wait that took the number for an unsigned one would last for weeks.
TEST(Sleep, Returns_for_zero_and_for_every_negative_time) {
    Sleep(0);
    Sleep(-1);
    Sleep(INT_MIN);
}

TEST(Sleep, Is_resumed_when_signals_interrupt_it) {
    const Alarms interrupt;

    EXPECT_GE(TimeOfSleep(100), milliseconds(100));

    EXPECT_GE(alarms, 1);
}

TEST(GetTickCount, Advances_by_at_least_the_milliseconds_slept) {
    const unsigned int start = GetTickCount();

    Sleep(30);

    EXPECT_GE(GetTickCount() - start, 30U);
}

// Times of logs that were written with either clock can be held against each other.
TEST(GetTickCount, Counts_the_milliseconds_of_the_monotonic_clock) {
    const auto now = [] {
        const auto time =
            std::chrono::duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
        return static_cast<unsigned int>(time.count());
    };
    const unsigned int before = now();

    const unsigned int ticks = GetTickCount();

    EXPECT_LE(ticks - before, now() - before);
}

TEST(GetTickCount, Never_goes_back) {
    unsigned int last = GetTickCount();
    for (int i = 0; i < 100'000; ++i) {
        const unsigned int now = GetTickCount();
        ASSERT_LT(now - last, 0x80000000U);
        last = now;
    }
}

}  // namespace
