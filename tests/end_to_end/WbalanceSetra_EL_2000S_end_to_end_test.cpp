#include <gtest/gtest.h>
#include <wbalance/WbalanceSetra_EL_2000S.h>
#include <wbalance/WithLineReadiness.h>

#include <cstdlib>

#include "simulator/VirtualBench.h"

using simulator::LineSettings;
using simulator::Options;
using simulator::VirtualBench;

namespace {

/// An EL-2000S on /dev/ttyS0, its driver, and what a host sees of a reading.
class WbalanceSetra_EL_2000SEndToEnd : public testing::Test {
 protected:
    ~WbalanceSetra_EL_2000SEndToEnd() override { ::unsetenv("WBALANCE_SLEEP"); }

    simulator::ConnectedInstrument& have(const Options& options) {
        return bench_.place("setra-el2000s", options);
    }
    int read(long mode) { return driver_.Weight(mode, &weight_, &decimals_); }
    /// Waits of 100 ms instead of 1 s, for what does not depend on the time-out.
    void hurry() { driver_.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S'); }

    VirtualBench bench_;
    WbalanceSetra_EL_2000S driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

}  // namespace

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_readiness_and_a_weight_at_the_delivered_line_settings) {
    auto& balance = have(Options().withLoad(12.34));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(read(1), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(decimals_, -1);
    EXPECT_EQ(balance.sentByHost(), "##");
    EXPECT_EQ(balance.sentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
    EXPECT_EQ(balance.settingsOfLastCommand(), LineSettings::parse("2400,8N1"));
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_paced_line_with_a_gap_is_joined) {
    have(Options().withLoad(-3.25).withPacing().with("gap=400ms"));
    ::setenv("WBALANCE_SLEEP", "20", 1);
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_moving_pan_is_read_in_mode_2_only) {
    auto& balance = have(Options().withLoad(12.34).withFault("busy"));
    hurry();
    EXPECT_EQ(driver_.IsReady(), 0);  // which leaves the port open
    EXPECT_EQ(read(2), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.sentByHost(), "######");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_takes_a_weight_tares_and_reads_zero) {
    auto& balance = have(Options().withLoad(12.34));
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.sentByHost(), "#T#");
    EXPECT_EQ(balance.sentByInstrument(), "1+    12.34 g\r\n1+     0.00 g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_of_a_pan_that_never_rests_sends_no_T) {
    auto& balance = have(Options().withLoad(12.34).withFault("busy"));
    hurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.sentByHost(), "#####");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, Tare_fails_on_a_balance_that_tares_with_another_command) {
    auto& balance = have(Options().withLoad(12.34).with("tare-command=$t"));
    hurry();
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.sentByInstrument(), "1+    12.34 g\r\n1+    12.34 g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, An_overloaded_balance_reads_0_with_success) {
    auto& balance = have(Options().withLoad(2500));
    hurry();
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(read(0), 1);
    EXPECT_EQ(weight_, 0.0);
    EXPECT_EQ(balance.sentByInstrument(), "1+      HHH g\r\n1+      HHH g\r\n");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, An_L_series_line_is_refused_five_times) {
    auto& balance = have(Options().withLoad(12.34).with("form=l-series"));
    hurry();
    EXPECT_EQ(driver_.IsReady(), 0);
    EXPECT_EQ(balance.sentByHost(), "#####");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_weight_before_any_readiness_fails_and_sends_nothing) {
    auto& balance = have(Options().withLoad(12.34));
    EXPECT_EQ(read(1), 0);
    EXPECT_EQ(balance.sentByHost(), "");
    EXPECT_FALSE(balance.isOpenedByHost());
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = have(Options().withLoad(12.34));
    ASSERT_EQ(driver_.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.sentByHost(), "");
}

TEST_F(WbalanceSetra_EL_2000SEndToEnd, A_readiness_of_the_lines_alone_spares_the_trial_weight) {
    auto& balance = have(Options().withLoad(12.34));
    WithLineReadiness<WbalanceSetra_EL_2000S> driver;
    driver.SetCommConfig(2400, 0, 8, 0, 0, 0, 'S');
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.sentByHost(), "T#");
}
