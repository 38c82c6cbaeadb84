#include <gtest/gtest.h>
#include <wbalance/WbalanceSartorius.h>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

class WbalanceSartoriusEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Place(const Options& options) {
        auto& balance = bench.Place("sartorius", options);
        EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
        return balance;
    }

    /// What one reading gives.
    double Reading(const Options& options) {
        Place(options);
        double weight = -1;
        EXPECT_EQ(driver.Weight(0, &weight, nullptr), 1);
        return weight;
    }

    VirtualBench bench;
    WbalanceSartorius driver;
};

TEST_F(WbalanceSartoriusEndToEnd, IsReady_opens_the_line_and_reads_once) {
    auto& balance = bench.Place("sartorius", Options().WithLoad(123.56));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "\x1bP\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "+   123.56 g  \r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("1200,7O1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceSartoriusEndToEnd, Weight_reads_lines_of_16_and_of_22_characters) {
    EXPECT_EQ(Reading(Options().WithLoad(-12.34)), -12.34);
    driver.CloseCommPort();
    driver.SetCommPort(1);
    EXPECT_EQ(Reading(Options().On("/dev/ttyS1").WithLoad(123.56).With("line=22")), 123.56);
}

TEST_F(WbalanceSartoriusEndToEnd, Tare_takes_the_container_away) {
    auto& balance = Place(Options().WithLoad(50));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "\x1bs3_\r\n\x1bT\r\n\x1bP\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "+     0.00 g  \r\n");
}

TEST_F(WbalanceSartoriusEndToEnd, TareSet_stores_the_preset_with_soft_key_4) {
    auto& balance = Place(Options().With("line=22").With("tare-line=TP1"));
    EXPECT_EQ(driver.TareSet(5.0), 1);
    EXPECT_EQ(balance.SentByHost(), "\x1bs3_\r\n\x1bT\r\n\x1bt5.00_\r\n\x1bkF4_\r\n\x1bP\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "TP1   +     5.00 g  \r\nN1    -     5.00 g  \r\n");
}

TEST_F(WbalanceSartoriusEndToEnd, TareSet_fails_where_the_key_stores_nothing) {
    Place(Options().With("store-key=off"));
    EXPECT_EQ(driver.TareSet(5.0), 0);
}

TEST_F(WbalanceSartoriusEndToEnd, TareSet_fails_where_the_tare_line_has_another_identifier) {
    // The tare, 5.00, is read in place of the net weight.
    Place(Options().With("line=22").With("tare-line=T1"));
    EXPECT_EQ(driver.TareSet(5.0), 0);
}

TEST_F(WbalanceSartoriusEndToEnd, RestoreFactorySettings_sends_nothing) {
    auto& balance = Place(Options());
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceSartoriusEndToEnd, A_pan_that_never_rests_is_not_printed_and_the_reading_fails) {
    auto& balance = Place(Options().WithLoad(50).WithFault("busy"));
    double weight = -1;
    EXPECT_EQ(driver.Weight(0, &weight, nullptr), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "");
}

TEST_F(WbalanceSartoriusEndToEnd, A_moving_pan_printed_at_once_reads_as_a_weight_like_any_other) {
    auto& balance = Place(Options().WithLoad(50).With("print=at-once").WithFault("busy"));
    double weight = -1;
    EXPECT_EQ(driver.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 50.0);
    EXPECT_EQ(balance.SentByInstrument(), "+    50.00    \r\n");
}

TEST_F(WbalanceSartoriusEndToEnd, An_overloaded_balance_reads_0_00_and_its_tare_succeeds) {
    auto& balance = Place(Options().WithLoad(700).With("print=at-once"));
    double weight = -1;
    EXPECT_EQ(driver.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "      H       \r\n");
    EXPECT_EQ(driver.Tare(), 1);
}

TEST_F(WbalanceSartoriusEndToEnd, An_error_line_reads_0_00) {
    EXPECT_EQ(Reading(Options().WithLoad(50).With("display=error").With("line=22")), 0.0);
}

TEST_F(WbalanceSartoriusEndToEnd, A_balance_in_standby_reads_0_00) {
    EXPECT_EQ(Reading(Options().WithLoad(50).With("display=standby").With("line=22")), 0.0);
}

TEST_F(WbalanceSartoriusEndToEnd, A_bracketed_last_digit_is_lost) {
    EXPECT_EQ(Reading(Options().WithLoad(123.56).With("verified")), 123.5);
}

TEST_F(WbalanceSartoriusEndToEnd, A_ninth_digit_is_lost_and_milligrams_are_not_scaled) {
    EXPECT_EQ(
        Reading(Options().WithLoad(0.11125507).With("unit=mg").With("readability=0.00000001")),
        11.25507);
}

TEST_F(WbalanceSartoriusEndToEnd, Kilograms_are_not_scaled) {
    EXPECT_EQ(Reading(Options().WithLoad(123.5).With("unit=kg").With("readability=0.1")), 0.1235);
}

}  // namespace
