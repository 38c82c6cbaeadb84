// What is the EL-2000S's own; what it shares with others is in SignedReadingTests.h.

#include "SignedReadingTests.h"

namespace scripted {
namespace {

struct El2000S {
    using Driver = WbalanceSetra_EL_2000S;
    static constexpr char kRequest[] = "#";
    static constexpr char kName[] = "Setra EL-2000S";
};

INSTANTIATE_TYPED_TEST_SUITE_P(WbalanceSetra_EL_2000S, SignedReadingDriver, El2000S);
INSTANTIATE_TYPED_TEST_SUITE_P(WbalanceSetra_EL_2000S, SignedReading, El2000S);

using WbalanceSetra_EL_2000STest = SignedReadingDriver<El2000S>;

// Tare

TEST_F(WbalanceSetra_EL_2000STest, Tare_takes_a_trial_weight_sends_T_waits_2_s_and_reads_zero) {
    line.Answer("#", {{"1+    12.34 g\r\n"}});
    line.Answer("#", {{"1-     0.05 g\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    const Steps weighing =
        Steps{R"(trace "Setra EL-2000S - Weight\n")", R"(trace "Sleep timeout 100 ms\n")"} +
        RequestSteps();
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(
                    kOpened + weighing +
                    Steps{"wait 1000: data", R"(read "1+    12.34 g\r\n")",
                          R"(trace "Read from scale: 1+    12.34 g\r\n (time elapsed: 0 ms)\n")",
                          "Sleep 100",
                          R"(trace "Read from scale this attempt: 1+    12.34 g\r\n. )"
                          R"(Complete answer from scale so far: 1+    12.34 g\r\n\n\n")"} +
                    kSilence +
                    Steps{R"(trace "Setra EL-2000S - weight = 12.34 gr.\n\n")",
                          R"(trace "Setra EL-2000S - Tare\n")", R"(write "T")",
                          R"(trace "<== T ... OK\n\n")", "Sleep 2000"} +
                    weighing +
                    Steps{"wait 1000: data", R"(read "1-     0.05 g\r\n")",
                          R"(trace "Read from scale: 1-     0.05 g\r\n (time elapsed: 0 ms)\n")",
                          "Sleep 100",
                          R"(trace "Read from scale this attempt: 1-     0.05 g\r\n. )"
                          R"(Complete answer from scale so far: 1-     0.05 g\r\n\n\n")"} +
                    kSilence + Steps{R"(trace "Setra EL-2000S - weight = -0.05 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_sends_no_T_to_a_balance_that_never_settles) {
    line.AlwaysAnswer("#", {{"U+    12.34 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("#", "#", "#", "#", "#"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_fails_on_a_port_that_does_not_open) {
    line.Fail("open");
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Trace(), EndsWith("INVALID COMM PORT ... UNABLE OPENING /dev/ttyS0!\n\n"));
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_fails_when_the_check_is_not_stable) {
    line.Answer("#", {{"1+    12.34 g\r\n"}});
    line.AlwaysAnswer("#", {{"U+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("#", "T", "#", "#", "#", "#", "#"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_that_can_not_be_sent_does_not_wait) {
    line.Answer("#", {{"1+    12.34 g\r\n"}});
    line.Fail("write", 2);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_THAT(line.Trace(), EndsWith("Setra EL-2000S - Tare\n<== T ... FAIL\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSetra_EL_2000STest, The_T_leaves_together_with_the_request_that_follows_it) {
    std::vector<long> left;
    line.OnCommand([&](const std::string& /*command*/) { left.push_back(line.Now()); });
    line.AlwaysAnswer("#", {{"1+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Left(), ElementsAre("#", "T", "#"));
    // The trial weight takes 1100 ms.
    EXPECT_THAT(left, ElementsAre(0, 3100, 3100));
}

// What a host overrides

TEST_F(WbalanceSetra_EL_2000STest, Tare_asks_the_hosts_readiness_and_its_Weight_in_mode_0) {
    Host<WbalanceSetra_EL_2000S> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    host.readiness = [] { return 1; };
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 0 without decimals"));
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_of_a_host_that_is_not_ready_sends_nothing) {
    Host<WbalanceSetra_EL_2000S> host;
    host.readiness = [] { return 0; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(host.calls, ElementsAre("IsReady"));
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceSetra_EL_2000STest, Tare_of_a_host_that_is_ready_without_a_port_fails_at_its_send) {
    Host<WbalanceSetra_EL_2000S> host;
    host.readiness = [] { return 1; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Setra EL-2000S - Tare\n")", R"(trace "<== T ... FAIL\n\n")"));
}

}  // namespace
}  // namespace scripted
