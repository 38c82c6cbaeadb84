// What is the XL-1800's own; what it shares with others is in SignedReadingTests.h.

#include "SignedReadingTests.h"

namespace scripted {
namespace {

struct Xl1800 {
    using Driver = WbalanceDIC_XL1800;
    static constexpr char kRequest[] = "?1";
    static constexpr char kName[] = "Denver Instrument Company XL-1800";
};

INSTANTIATE_TYPED_TEST_SUITE_P(WbalanceDIC_XL1800, SignedReadingDriver, Xl1800);
INSTANTIATE_TYPED_TEST_SUITE_P(WbalanceDIC_XL1800, SignedReading, Xl1800);

using WbalanceDIC_XL1800Test = SignedReadingDriver<Xl1800>;

// Tare

TEST_F(WbalanceDIC_XL1800Test, Tare_sends_T_waits_2_s_and_reads_zero_without_opening) {
    line.Answer("?1", {{"1+    12.34 g\r\n"}});
    line.Answer("?1", {{"1-     0.05 g\r\n"}});
    ASSERT_EQ(balance.IsReady(), 1);
    line.Forget();

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            Steps{R"(trace "Denver Instrument Company XL-1800 - Tare\n")", R"(write "T")",
                  R"(trace "<== T ... OK\n\n")", "Sleep 2000",
                  R"(trace "Denver Instrument Company XL-1800 - Weight\n")",
                  R"(trace "Sleep timeout 100 ms\n")"} +
            RequestSteps() +
            Steps{"wait 1000: data", R"(read "1-     0.05 g\r\n")",
                  R"(trace "Read from scale: 1-     0.05 g\r\n (time elapsed: 0 ms)\n")",
                  "Sleep 100",
                  R"(trace "Read from scale this attempt: 1-     0.05 g\r\n. )"
                  R"(Complete answer from scale so far: 1-     0.05 g\r\n\n\n")"} +
            kSilence +
            Steps{R"(trace "Denver Instrument Company XL-1800 - weight = -0.05 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_on_a_closed_port_at_its_send) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Denver Instrument Company XL-1800 - Tare\n")",
                            R"(trace "<== T ... FAIL\n\n")"));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_on_a_port_that_did_not_open) {
    line.Fail("open");
    EXPECT_EQ(balance.IsReady(), 0);
    line.Forget();
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_THAT(line.Sleeps(), IsEmpty());
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_when_the_check_is_not_stable) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    line.AlwaysAnswer("?1", {{"U+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("T", "?1", "?1", "?1", "?1", "?1"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_that_can_not_be_sent_does_not_wait) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    line.Fail("write");
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("XL-1800 - Tare\n<== T ... FAIL\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, The_T_leaves_together_with_the_request_that_follows_it) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    std::vector<long> left;
    line.OnCommand([&](const std::string& /*command*/) { left.push_back(line.Now()); });
    line.Answer("?1", {{"1+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Left(), ElementsAre("T", "?1"));
    EXPECT_THAT(left, ElementsAre(2000, 2000));
}

// What a host overrides

TEST_F(WbalanceDIC_XL1800Test, Tare_asks_the_hosts_Weight_in_mode_0_and_not_its_readiness) {
    Host<WbalanceDIC_XL1800> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    host.readiness = [] { return 0; };
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("Weight 0 without decimals"));
}

}  // namespace
}  // namespace scripted
