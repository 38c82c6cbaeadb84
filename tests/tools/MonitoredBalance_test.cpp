// wbalance monitor whose processes are killed, or which has nothing left to start them with.

#include <gmock/gmock.h>
#include <unistd.h>

#include "Examples.h"
#include "RunProgram.h"
#include "simulator/VirtualBench.h"

using examples::kBalance;
using simulator::Options;
using simulator::VirtualBench;
using testing::HasSubstr;
using testing::Not;

namespace {

/// Runs a monitor with `arguments` by way of `launcher`, and `script` beside it. `script` has
/// $monitor, the monitor's process, and `await TEXT`, which waits until a line holds TEXT. The
/// output is the monitor's lines, then what `script` said.
Ran MonitorWhile(const std::string& launcher, const std::string& arguments,
                 const std::string& script) {
    const TemporaryFile lines;
    return RunShell(
        "lines=" + lines.Path() +
        "; await() { for i in $(seq 1200); do ! grep -q \"$1\" $lines || return 0; sleep 0.05; "
        "done; echo \"never saw $1\"; kill $monitor; }; (exec " +
        launcher + " " WBALANCE " monitor " + arguments + " >$lines) & monitor=$!; said=$(" +
        script + "); wait $monitor; code=$?; cat $lines; echo \"$said\"; exit $code");
}

std::size_t CountOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(MonitoredBalance, Is_lost_when_its_idle_process_is_killed) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    // Between two readings: the second is a minute away.
    const Ran ran = MonitorWhile("env", kBalance + "@0 -m now -t 0 -i 60 --csv",
                                 "await ,weight,; child=$(pgrep -P $monitor); kill -KILL $child; "
                                 "await ,lost,; [ ! -e /proc/$child ] || echo a zombie; kill "
                                 "$monitor");
    EXPECT_THAT(ran.output, HasSubstr(",\"/dev/ttyS0\",lost,"));
    EXPECT_THAT(ran.output, Not(HasSubstr("never saw")));
    EXPECT_THAT(ran.output, Not(HasSubstr("a zombie")));
    EXPECT_THAT(ran.errors, HasSubstr("lost 1 times"));
    EXPECT_NE(access("/var/lock/LCK..ttyS0", F_OK), 0);
}

TEST(MonitoredBalance, Says_why_it_is_lost_and_goes_on_after_each_end_of_its_process) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    for (const char* signal : {"KILL", "SEGV"}) {
        // A sanitizer, where there is one, leaves the signal alone.
        const Ran ran = MonitorWhile("env ASAN_OPTIONS=handle_segv=0",
                                     kBalance + "@0 -m now -t 0 -i 3 --json -n 2",
                                     "await weight; kill -s " + std::string(signal) +
                                         " $(pgrep -P $monitor); await lost; await back");
        EXPECT_THAT(ran.output,
                    HasSubstr("/dev/ttyS0: the process that talked to the balance was killed (SIG" +
                              std::string(signal) + "); try again"));
        EXPECT_THAT(ran.output, HasSubstr("at /dev/ttyS0"));
        EXPECT_EQ(ran.exitCode, 0) << ran.output;
    }
}

TEST(MonitoredBalance, Waits_for_file_descriptors_where_there_are_none) {
    if (WBALANCE_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors itself";
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    const Ran ran =
        MonitorWhile("prlimit --nofile=5: env", kBalance + "@0 -m now -t 0 -i 0 --json -n 1",
                     "await lost; prlimit --pid $monitor --nofile=1024: || kill $monitor");
    EXPECT_THAT(ran.output,
                HasSubstr("no process can be started for the balance: Too many open files; end "
                          "other programs, or raise the limits of this one (ulimit -n, ulimit "
                          "-u)"));
    EXPECT_THAT(ran.output, HasSubstr("10.00"));
    EXPECT_EQ(ran.exitCode, 0) << ran.output;
}

// An hour's interval is no reason to leave a balance out for an hour.
TEST(MonitoredBalance, Is_looked_for_soon_however_seldom_it_is_read) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    const Ran ran = MonitorWhile("env", kBalance + "@0 -m now -t 0 -i 3600 --csv",
                                 "await ,weight,; kill -KILL $(pgrep -P $monitor); await ,back,; "
                                 "sleep 2; kill $monitor");
    EXPECT_THAT(ran.output, Not(HasSubstr("never saw")));
    EXPECT_THAT(ran.errors, HasSubstr(": 2 readings, "));
}

// More readings than there were starts would be those that were made up for.
TEST(MonitoredBalance, A_slow_reading_is_followed_by_no_burst_of_readings) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    const Ran ran = MonitorWhile("env", kBalance + "@0 -m now -t 0 -i 0.5 --for 10 --csv",
                                 "await ,weight,; child=$(pgrep -P $monitor); kill -STOP $child; "
                                 "sleep 6; kill -CONT $child");
    const int readings = static_cast<int>(CountOf(",weight,", ran.output));
    EXPECT_GE(readings, 2) << ran.output;
    EXPECT_LE(readings, 12) << ran.output;
    EXPECT_THAT(ran.errors, HasSubstr("lost 0 times"));
}

}  // namespace
