// Programs that are started with some of standard input, output and error closed.

#include <gmock/gmock.h>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using testing::HasSubstr;

namespace {

const std::string kWeigh = " weigh -d " + kBalance + " -t 0";

/// Weighs with these streams closed; a program that hangs is ended with exit code 124.
Ran WeighWithout(const std::string& closed) {
    return RunShell("timeout 60 " WBALANCE_SIM " " + kBalance + " --load 12.34 -- sh -c 'exec " +
                    std::string(WBALANCE) + kWeigh + " " + closed + "'");
}

TEST(StandardStreams, A_weight_that_cannot_be_told_is_a_failure_whatever_else_is_closed) {
    for (const char* closed : {">&-", "<&- >&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        const Ran ran = WeighWithout(closed);
        EXPECT_EQ(ran.exitCode, 70) << closed;
        EXPECT_EQ(ran.output, "");
    }
    EXPECT_EQ(WeighWithout("<&- >&-").errors,
              "wbalance: standard output can't be written: Bad file descriptor\n");
}

TEST(StandardStreams, A_weight_is_told_without_input_and_errors) {
    for (const char* closed : {"<&-", "2>&-", "<&- 2>&-"}) {
        const Ran ran = WeighWithout(closed);
        EXPECT_EQ(ran.output, "12.34 g\n") << closed;
        EXPECT_EQ(ran.exitCode, 0) << closed;
    }
}

TEST(StandardStreams, The_simulator_serves_and_logs_without_them) {
    for (const char* closed : {"<&-", "<&- 2>&-", "<&- >&-", "<&- >&- 2>&-"}) {
        const TemporaryFile log;
        const TemporaryFile weight;
        const Ran ran = RunShell("timeout 60 " WBALANCE_SIM " " + kBalance +
                                 " --load 12.34 --log " + log.Path() + " -- sh -c '" + WBALANCE +
                                 kWeigh + " >" + weight.Path() + "' " + closed);
        EXPECT_EQ(ran.exitCode, 0) << closed;
        EXPECT_EQ(weight.Text(), "12.34 g\n") << closed;
        EXPECT_THAT(log.Text(), HasSubstr(" > S\\r\\n\n")) << closed;
    }
}

}  // namespace
