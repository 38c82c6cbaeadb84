#include <gtest/gtest.h>
#include <wbalance/WbalanceDIC_XL1800.h>
#include <wbalance/WithLineReadiness.h>

#include <cstdlib>

#include "simulator/VirtualBench.h"

using simulator::LineSettings;
using simulator::Options;
using simulator::VirtualBench;

namespace {

/// An XL-1800 on /dev/ttyS0, its driver, and what a host sees of a reading.
class WbalanceDIC_XL1800EndToEnd : public testing::Test {
 protected:
    ~WbalanceDIC_XL1800EndToEnd() override { ::unsetenv("WBALANCE_SLEEP"); }

    simulator::ConnectedInstrument& have(const Options& options) {
        return bench_.place("denver-xl1800", options);
    }
    int read(long mode) { return driver_.Weight(mode, &weight_, &decimals_); }
    /// The port open, nothing asked.
    void open() { ASSERT_EQ(driver_.OpenAndSetDefCommConfig(), 1); }
    /// Waits of 100 ms instead of 1 s, for what does not depend on the time-out.
    void openInAHurry() {
        driver_.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
        open();
    }

    VirtualBench bench_;
    WbalanceDIC_XL1800 driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

}  // namespace

TEST_F(WbalanceDIC_XL1800EndToEnd, A_readiness_and_a_weight_at_the_delivered_line_settings) {
    auto& balance = have(Options().withLoad(12.34));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(read(1), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(decimals_, -1);
    EXPECT_EQ(balance.sentByHost(), "?1?1");
    EXPECT_EQ(balance.sentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
    EXPECT_EQ(balance.settingsOfLastCommand(), LineSettings::parse("2400,8N1"));
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_paced_line_is_collected_in_pieces) {
    have(Options().withLoad(-3.25).withPacing());
    open();
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_line_with_a_gap_is_joined) {
    have(Options().withLoad(12.34).with("gap=400ms"));
    open();
    ::setenv("WBALANCE_SLEEP", "20", 1);
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, 12.34);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_moving_pan_is_read_in_mode_2_only) {
    auto& balance = have(Options().withLoad(12.34).withFault("busy"));
    openInAHurry();
    EXPECT_EQ(read(2), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.sentByHost(), "?1");
    EXPECT_EQ(read(0), 0);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.sentByHost(), "?1?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_stable_weight_is_requested_until_the_pan_rests) {
    auto& balance = have(Options().withLoad(0).with("settling=300ms"));
    open();
    balance.setLoad(50);
    EXPECT_EQ(read(0), 1);
    EXPECT_NEAR(weight_, 50.0, 0.02);  // at rest is what changes by no more than a step
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_tares_and_reads_zero) {
    auto& balance = have(Options().withLoad(12.34));
    open();
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.sentByHost(), "T?1");
    EXPECT_EQ(balance.sentByInstrument(), "1+     0.00 g\r\n");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_before_any_readiness_fails_and_sends_nothing) {
    auto& balance = have(Options().withLoad(12.34));
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(read(1), 0);
    EXPECT_EQ(balance.sentByHost(), "");
    EXPECT_FALSE(balance.isOpenedByHost());
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_of_a_pan_that_never_rests_fails) {
    auto& balance = have(Options().withLoad(12.34).withFault("busy"));
    openInAHurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.sentByHost(), "T?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = have(Options().withLoad(12.34));
    open();
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.sentByHost(), "");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_silent_balance_is_asked_five_times) {
    auto& balance = have(Options().withLoad(12.34).withFault("silent"));
    openInAHurry();
    EXPECT_EQ(read(1), 0);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.sentByHost(), "?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_relatives_line_with_a_blank_is_refused_five_times) {
    auto& balance = have(Options().withLoad(12.34).with("form=spaced"));
    openInAHurry();
    EXPECT_EQ(read(2), 0);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.sentByHost(), "?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, An_echoed_request_ahead_of_a_bare_sign_counts_as_stable) {
    auto& balance =
        have(Options().withLoad(12.34).with("echo").with("form=bare").withFault("busy"));
    openInAHurry();
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.sentByInstrument(), "?1+     12.34\r\n");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_time_of_day_ahead_of_the_line_is_passed_over) {
    have(Options().withLoad(-12.34).with("time-line"));
    openInAHurry();
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, -12.34);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_readiness_of_the_lines_alone_serves_every_operation) {
    auto& balance = have(Options().withLoad(12.34));
    WithLineReadiness<WbalanceDIC_XL1800> driver;
    driver.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.sentByHost(), "");
    EXPECT_EQ(driver.Weight(0, &weight_, nullptr), 1);
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.sentByHost(), "?1T?1");
}
