#include <gtest/gtest.h>
#include <wbalance/WbalanceKern_EW_EGN_EWB.h>
#include <wbalance/WithLineReadiness.h>

#include <memory>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// A Kern balance on /dev/ttyS0, the driver with a readiness of the line's alone, and what a host
/// sees of a reading.
class WbalanceKernEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench_.Place("kern", options);
    }
    int Read(long mode) { return driver_.Weight(mode, &weight_, &decimals_); }

    VirtualBench bench_;
    WithLineReadiness<WbalanceKern_EW_EGN_EWB> driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

/// Readings of 300 ms instead of 3 s, for what does not depend on the time-out.
void Hurry(Cwbalance& driver) {
    driver.SetCommConfig(1200, 0, 8, 2, 0, 0, 'S');
}

}  // namespace

TEST_F(WbalanceKernEndToEnd, An_immediate_weight_at_the_delivered_line_settings) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(decimals_, 7);
    EXPECT_EQ(balance.SentByHost(), "O8\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "A00\r\n+  12.50 G S\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("1200,8N2"));
}

TEST_F(WbalanceKernEndToEnd, A_paced_line_changes_nothing) {
    Have(Options().WithLoad(-3.25).WithPacing());
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceKernEndToEnd, A_stable_weight_of_a_resting_pan) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(balance.SentByHost(), "O9\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_stable_weight_is_waited_for) {
    auto& balance = Have(Options().WithLoad(0).With("settling=500ms"));
    balance.SetLoad(50);
    EXPECT_EQ(Read(0), 1);
    EXPECT_NEAR(weight_, 50.0, 0.02);  // at rest is what changes by no more than a step
    EXPECT_EQ(balance.SentByHost(), "O9\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_pan_that_never_rests_fails_in_mode_0) {
    auto& balance = Have(Options().WithLoad(12.5).WithFault("busy"));
    Hurry(driver_);
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight_, -1);
    EXPECT_EQ(balance.SentByInstrument(), "A00\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_pan_that_never_rests_is_averaged_in_mode_1) {
    auto& balance = Have(Options().WithLoad(12.5).WithFault("busy"));
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(decimals_, -1);
    EXPECT_EQ(balance.SentByHost(), "O9\r\nO0\r\nO8\r\nO8\r\nO8\r\nO8\r\nO8\r\n");
}

TEST_F(WbalanceKernEndToEnd, Tare_tares) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T \r\n");
    EXPECT_EQ(balance.SentByInstrument(), "A00\r\n");
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 0.0);
}

TEST_F(WbalanceKernEndToEnd, Tare_of_an_overloaded_balance_is_refused) {
    auto& balance = Have(Options().WithLoad(700));
    Hurry(driver_);
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.SentByInstrument(), "E01\r\n");
}

TEST_F(WbalanceKernEndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceKernEndToEnd, A_silent_balance_fails) {
    Have(Options().WithLoad(12.5).WithFault("silent"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(weight_, -1);
}

TEST_F(WbalanceKernEndToEnd, An_overloaded_balance_reads_its_digits_with_success) {
    auto& balance = Have(Options().WithLoad(700));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 700.0);
    EXPECT_EQ(balance.SentByInstrument(), "A00\r\n+ 700.00 G E\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_moving_pan_is_read_with_success) {
    Have(Options().WithLoad(12.5).WithFault("busy"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.5);
}

TEST_F(WbalanceKernEndToEnd, Zeros_in_place_of_the_blanks_change_nothing) {
    Have(Options().WithLoad(-3.25).With("fill=zero"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, -3.25);
}

TEST_F(WbalanceKernEndToEnd, A_record_of_the_7_digit_format_loses_its_last_digit) {
    auto& balance = Have(Options().WithLoad(12.345).With("digits=7").With("readability=0.001"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.34);
    EXPECT_EQ(balance.SentByInstrument(), "A00\r\n+  12.345 G S\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_record_without_an_acknowledgement_fails) {
    auto& balance = Have(Options().WithLoad(12.5).With("acknowledgement=none"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(balance.SentByInstrument(), "+  12.50 G S\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_record_ahead_of_its_acknowledgement_is_read) {
    auto& balance = Have(Options().WithLoad(12.5).With("acknowledgement=last"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(balance.SentByInstrument(), "+  12.50 G S\r\nA00\r\n");
}

TEST_F(WbalanceKernEndToEnd, A_wrong_speed_reads_nothing) {
    Have(Options().WithLoad(12.5).At("4800,8N2"));
    Hurry(driver_);
    EXPECT_EQ(Read(2), 0);
}

TEST_F(WbalanceKernEndToEnd, A_pulled_adapter_fails_and_a_new_driver_reads_again_once_it_is_back) {
    auto& balance = Have(Options().On("/dev/ttyUSB0").WithLoad(12.5));
    const auto construct = [] {
        auto driver = std::make_unique<WithLineReadiness<WbalanceKern_EW_EGN_EWB>>();
        driver->SetCommConfig(1200, 0, 8, 2, 0, 0, 'U');
        return driver;
    };
    auto driver = construct();
    EXPECT_EQ(driver->Weight(2, &weight_, nullptr), 1);
    balance.Unplug();
    EXPECT_EQ(driver->Weight(2, &weight_, nullptr), 0);
    driver.reset();  // lets go of the port, which nobody else could open otherwise
    balance.PlugIn();
    driver = construct();
    EXPECT_EQ(driver->Weight(2, &weight_, nullptr), 1);
}
