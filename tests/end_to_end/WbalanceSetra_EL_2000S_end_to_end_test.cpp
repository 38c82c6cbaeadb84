#include <gtest/gtest.h>
#include <wbalance/WbalanceSetra_EL_2000S.h>
#include <wbalance/WithLineReadiness.h>

#include <cstdlib>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// An EL-2000S on /dev/ttyS0, its driver, and what a host sees of a reading.
class WbalanceSetra_EL_2000SEndToEnd : public testing::Test {
 protected:
    ~WbalanceSetra_EL_2000SEndToEnd() override { ::unsetenv("WBALANCE_SLEEP"); }

    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench_.Place("setra-el2000s", options);
    }
    int Read(long mode) { return driver_.Weight(mode, &weight_, &decimals_); }
    /// Waits of 100 ms instead of 1 s, for what does not depend on the time-out.
    void Hurry() { driver_.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S'); }

    VirtualBench bench_;
    WbalanceSetra_EL_2000S driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

}  // namespace

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_readiness_and_a_weight_at_the_delivered_line_settings) {
    auto& balance = Have(Options().WithLoad(12.34));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(decimals_, -1);
    EXPECT_EQ(balance.SentByHost(), "##");
    EXPECT_EQ(balance.SentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,8N1"));
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_paced_line_with_a_gap_is_joined) {
    Have(Options().WithLoad(-3.25).WithPacing().With("gap=400ms"));
    ::setenv("WBALANCE_SLEEP", "20", 1);
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_moving_pan_is_read_in_mode_2_only) {
    auto& balance = Have(Options().WithLoad(12.34).WithFault("busy"));
    Hurry();
    EXPECT_EQ(driver_.IsReady(), 0);  // which leaves the port open
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.SentByHost(), "######");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_takes_a_weight_tares_and_reads_zero) {
    auto& balance = Have(Options().WithLoad(12.34));
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "#T#");
    EXPECT_EQ(balance.SentByInstrument(), "1+    12.34 g\r\n1+     0.00 g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_of_a_pan_that_never_rests_sends_no_T) {
    auto& balance = Have(Options().WithLoad(12.34).WithFault("busy"));
    Hurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "#####");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_fails_on_a_balance_that_tares_with_another_command) {
    auto& balance = Have(Options().WithLoad(12.34).With("tare-command=$t"));
    Hurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.SentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, An_overloaded_balance_reads_0_with_success) {
    auto& balance = Have(Options().WithLoad(2500));
    Hurry();
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "1+      HHH g\r\n1+      HHH g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, An_L_series_line_is_refused_five_times) {
    auto& balance = Have(Options().WithLoad(12.34).With("form=l-series"));
    Hurry();
    EXPECT_EQ(driver_.IsReady(), 0);
    EXPECT_EQ(balance.SentByHost(), "#####");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_weight_before_any_readiness_fails_and_sends_nothing) {
    auto& balance = Have(Options().WithLoad(12.34));
    EXPECT_EQ(Read(1), 0);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_FALSE(balance.IsOpenedByHost());
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = Have(Options().WithLoad(12.34));
    ASSERT_EQ(driver_.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_readiness_of_the_lines_alone_spares_the_trial_weight) {
    auto& balance = Have(Options().WithLoad(12.34));
    WithLineReadiness<WbalanceSetra_EL_2000S> driver;
    driver.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T#");
}
