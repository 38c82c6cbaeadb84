#include "ScriptedTest.h"

using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class WbalanceMettlerToledoTest : public ScriptedTest {
 protected:
    Open<WbalanceMettlerToledo> balance;
    double weight = -1.0;
    int decimals = -1;
};

TEST_F(WbalanceMettlerToledoTest,
       A_stable_weight_in_mode_0_from_the_open_to_the_trace_of_the_weight) {
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 2400",
            "setDataBits 7", "setParity even", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input", R"(trace "Generic Mettler Toledo - Reset\n")", R"(write "@\r\n")",
            R"(trace "<== @\r\n ... OK\n\n")",
            R"(trace "Generic Mettler Toledo - Stable weight\n")", R"(write "S\r\n")",
            R"(trace "<== S\r\n ... OK\n\n")", "Sleep 1000", "wait 1000: data",
            R"(read "S S     100.00 g\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: S S     100.00 g\r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Generic Mettler Toledo - weight = 100.00 cc.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

}  // namespace
