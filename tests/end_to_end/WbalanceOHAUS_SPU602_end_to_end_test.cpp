#include <gtest/gtest.h>
#include <wbalance/WbalanceOHAUS_SPU602.h>

#include <QCoreApplication>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

class WbalanceOHAUS_SPU602EndToEnd : public testing::Test {
 protected:
    /// One reading on a line that the driver has just opened.
    int Read(long mode, const Options& options) {
        bench.Place("ohaus", options);
        EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
        return driver.Weight(mode, &weight, &decimals);
    }

    VirtualBench bench;
    WbalanceOHAUS_SPU602 driver;
    double weight = -1;
    int decimals = -1;
};

TEST_F(WbalanceOHAUS_SPU602EndToEnd, IsReady_opens_the_line_and_prints_once) {
    auto& balance = bench.Place("ohaus", Options().WithLoad(12.34));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "P\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "       12.34 g      \r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,7N1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_0_reads_a_stable_print) {
    EXPECT_EQ(Read(0, Options().WithLoad(-12.34).With("line=explorer")), 1);
    EXPECT_EQ(weight, -12.34);
    EXPECT_EQ(decimals, 7);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_reports_2_decimals_for_a_balance_that_shows_none) {
    EXPECT_EQ(Read(1, Options().WithLoad(311).With("readability=1").With("line=scout-pro-narrow")),
              1);
    EXPECT_EQ(weight, 311.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_1_takes_an_unsteady_print) {
    EXPECT_EQ(Read(1, Options().WithLoad(12.34).WithFault("busy")), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_0_fails_when_the_pan_does_not_come_to_rest) {
    EXPECT_EQ(Read(0, Options().WithLoad(12.34).WithFault("busy")), 0);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_1_fails_too_when_stable_only_is_set) {
    EXPECT_EQ(Read(1, Options().WithLoad(12.34).With("stable-only").WithFault("busy")), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Tare_takes_the_container_away) {
    auto& balance = bench.Place("ohaus", Options().WithLoad(50).With("line=explorer-pro"));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "P\r\nT\r\nSP\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "    50.00 g     \r\n     0.00 g     \r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd,
       Tare_fails_on_a_Scout_Pro_without_SP_which_tared_all_the_same) {
    auto& balance = bench.Place("ohaus", Options().WithLoad(50).With("stable-print=off"));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "P\r\nT\r\nSP\r\n");
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, TareSet_sends_nothing) {
    auto& balance = bench.Place("ohaus", Options());
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.TareSet(5.0), 0);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_leaves_with_the_next_reading) {
    auto& balance = bench.Place("ohaus", Options().WithLoad(12.34).With("line=explorer"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(balance.SentByHost(), "\x1bR\r\n0A\r\nP\r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_leaves_with_the_hosts_event_loop) {
    auto& balance = bench.Place("ohaus", Options().WithLoad(12.34).With("line=explorer"));
    char name[] = "host";
    char* words[] = {name};
    int count = 1;
    QCoreApplication host(count, words);
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
    QCoreApplication::processEvents();
    EXPECT_EQ(balance.SentByHost(), "\x1bR\r\n0A\r\n");
    driver.CloseCommPort();
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_ends_the_automatic_print) {
    auto& balance = bench.Place(
        "ohaus", Options().WithLoad(12.34).With("line=explorer").With("factory-auto-print"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
    // One line of the automatic print, before 0A, and one of P.
    EXPECT_EQ(balance.SentByInstrument(), "     12.34 g\r\n     12.34 g\r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, After_a_reset_to_other_line_settings_every_reading_fails) {
    bench.Place("ohaus", Options().WithLoad(12.34).With("reset-changes-line"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Numeric_only_lines_fail) {
    EXPECT_EQ(Read(1, Options().WithLoad(12.34).With("numeric-only")), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Ounces_fail) {
    EXPECT_EQ(Read(1, Options().WithLoad(12.34).With("unit=oz")), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Kilograms_are_not_scaled) {
    EXPECT_EQ(Read(1, Options().WithLoad(123.4).With("unit=kg").With("readability=0.1")), 1);
    EXPECT_EQ(weight, 0.1234);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Loads_out_of_range_fail) {
    EXPECT_EQ(Read(1, Options().WithLoad(700)), 0);
}

// Single characters end the three attempts of a reading, and a slow line makes them single.
TEST_F(WbalanceOHAUS_SPU602EndToEnd, The_rest_of_an_answer_in_pieces_is_read_as_the_next_weight) {
    auto& balance =
        bench.Place("ohaus", Options().WithLoad(12.34).At("300,7N1").WithPacing("character"));
    driver.SetCommConfig(300, 0, 7, 0, 0, 1, 'S');
    ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.Weight(2, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    balance.SetLoad(50);
    EXPECT_EQ(driver.Weight(2, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.34) << "50 g lie on the pan";
}

}  // namespace
