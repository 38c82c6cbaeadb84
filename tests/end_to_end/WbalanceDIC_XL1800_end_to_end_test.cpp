#include <gtest/gtest.h>
#include <wbalance/WbalanceDIC_XL1800.h>
#include <wbalance/WithLineReadiness.h>

#include <cstdlib>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// An XL-1800 on /dev/ttyS0, its driver, and what a host sees of a reading.
class WbalanceDIC_XL1800EndToEnd : public testing::Test {
 protected:
    ~WbalanceDIC_XL1800EndToEnd() override { ::unsetenv("WBALANCE_SLEEP"); }

    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench_.Place("denver-xl1800", options);
    }
    int Read(long mode) { return driver_.Weight(mode, &weight_, &decimals_); }
    /// The port open, nothing asked.
    void Open() { ASSERT_EQ(driver_.OpenAndSetDefCommConfig(), 1); }
    /// Waits of 100 ms instead of 1 s, for what does not depend on the time-out.
    void OpenInAHurry() {
        driver_.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
        Open();
    }

    VirtualBench bench_;
    WbalanceDIC_XL1800 driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

}  // namespace

TEST_F(WbalanceDIC_XL1800EndToEnd, A_readiness_and_a_weight_at_the_delivered_line_settings) {
    auto& balance = Have(Options().WithLoad(12.34));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(decimals_, -1);
    EXPECT_EQ(balance.SentByHost(), "?1?1");
    EXPECT_EQ(balance.SentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,8N1"));
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_paced_line_is_collected_in_pieces) {
    Have(Options().WithLoad(-3.25).WithPacing());
    Open();
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_line_with_a_gap_is_joined) {
    Have(Options().WithLoad(12.34).With("gap=400ms"));
    Open();
    ::setenv("WBALANCE_SLEEP", "20", 1);
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, 12.34);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_moving_pan_is_read_in_mode_2_only) {
    auto& balance = Have(Options().WithLoad(12.34).WithFault("busy"));
    OpenInAHurry();
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.SentByHost(), "?1");
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.SentByHost(), "?1?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_stable_weight_is_requested_until_the_pan_rests) {
    auto& balance = Have(Options().WithLoad(0).With("settling=300ms"));
    Open();
    balance.SetLoad(50);
    EXPECT_EQ(Read(0), 1);
    EXPECT_NEAR(weight_, 50.0, 0.02);  // at rest is what changes by no more than a step
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_tares_and_reads_zero) {
    auto& balance = Have(Options().WithLoad(12.34));
    Open();
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T?1");
    EXPECT_EQ(balance.SentByInstrument(), "1+     0.00 g\r\n");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_before_any_readiness_fails_and_sends_nothing) {
    auto& balance = Have(Options().WithLoad(12.34));
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(Read(1), 0);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_FALSE(balance.IsOpenedByHost());
}

TEST_F(WbalanceDIC_XL1800EndToEnd, Tare_of_a_pan_that_never_rests_fails) {
    auto& balance = Have(Options().WithLoad(12.34).WithFault("busy"));
    OpenInAHurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "T?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = Have(Options().WithLoad(12.34));
    Open();
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_silent_balance_is_asked_five_times) {
    auto& balance = Have(Options().WithLoad(12.34).WithFault("silent"));
    OpenInAHurry();
    EXPECT_EQ(Read(1), 0);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.SentByHost(), "?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_relatives_line_with_a_blank_is_refused_five_times) {
    auto& balance = Have(Options().WithLoad(12.34).With("form=spaced"));
    OpenInAHurry();
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.SentByHost(), "?1?1?1?1?1");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, An_echoed_request_ahead_of_a_bare_sign_counts_as_stable) {
    auto& balance =
        Have(Options().WithLoad(12.34).With("echo").With("form=bare").WithFault("busy"));
    OpenInAHurry();
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.SentByInstrument(), "?1+     12.34\r\n");
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_time_of_day_ahead_of_the_line_is_passed_over) {
    Have(Options().WithLoad(-12.34).With("time-line"));
    OpenInAHurry();
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, -12.34);
}

TEST_F(WbalanceDIC_XL1800EndToEnd, A_readiness_of_the_lines_alone_serves_every_operation) {
    auto& balance = Have(Options().WithLoad(12.34));
    WithLineReadiness<WbalanceDIC_XL1800> driver;
    driver.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_EQ(driver.Weight(0, &weight_, nullptr), 1);
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "?1T?1");
}
