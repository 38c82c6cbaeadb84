#include <gtest/gtest.h>
#include <wbalance/WbalanceOHAUS_SPU602.h>

#include <QCoreApplication>

#include "simulator/VirtualBench.h"

using simulator::LineSettings;
using simulator::Options;
using simulator::VirtualBench;

namespace {

class WbalanceOHAUS_SPU602EndToEnd : public testing::Test {
 protected:
    /// One reading on a line that the driver has just opened.
    int read(long mode, const Options& options) {
        bench.place("ohaus", options);
        EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
        return driver.Weight(mode, &weight, &decimals);
    }

    VirtualBench bench;
    WbalanceOHAUS_SPU602 driver;
    double weight = -1;
    int decimals = -1;
};

TEST_F(WbalanceOHAUS_SPU602EndToEnd, IsReady_opens_the_line_and_prints_once) {
    auto& balance = bench.place("ohaus", Options().withLoad(12.34));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.sentByHost(), "P\r\n");
    EXPECT_EQ(balance.sentByInstrument(), "       12.34 g      \r\n");
    EXPECT_EQ(balance.settingsOfLastCommand(), LineSettings::parse("2400,7N1"));
    EXPECT_TRUE(balance.isOpenedByHost());
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_0_reads_a_stable_print) {
    EXPECT_EQ(read(0, Options().withLoad(-12.34).with("line=explorer")), 1);
    EXPECT_EQ(weight, -12.34);
    EXPECT_EQ(decimals, 7);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_reports_2_decimals_for_a_balance_that_shows_none) {
    EXPECT_EQ(read(1, Options().withLoad(311).with("readability=1").with("line=scout-pro-narrow")),
              1);
    EXPECT_EQ(weight, 311.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_1_takes_an_unsteady_print) {
    EXPECT_EQ(read(1, Options().withLoad(12.34).withFault("busy")), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_0_fails_when_the_pan_does_not_come_to_rest) {
    EXPECT_EQ(read(0, Options().withLoad(12.34).withFault("busy")), 0);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Weight_in_mode_1_fails_too_when_stable_only_is_set) {
    EXPECT_EQ(read(1, Options().withLoad(12.34).with("stable-only").withFault("busy")), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Tare_takes_the_container_away) {
    auto& balance = bench.place("ohaus", Options().withLoad(50).with("line=explorer-pro"));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.sentByHost(), "P\r\nT\r\nSP\r\n");
    EXPECT_EQ(balance.sentByInstrument(), "    50.00 g     \r\n     0.00 g     \r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd,
       Tare_fails_on_a_Scout_Pro_without_SP_which_tared_all_the_same) {
    auto& balance = bench.place("ohaus", Options().withLoad(50).with("stable-print=off"));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.sentByHost(), "P\r\nT\r\nSP\r\n");
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, TareSet_sends_nothing) {
    auto& balance = bench.place("ohaus", Options());
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.TareSet(5.0), 0);
    EXPECT_EQ(balance.sentByHost(), "");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_leaves_with_the_next_reading) {
    auto& balance = bench.place("ohaus", Options().withLoad(12.34).with("line=explorer"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.sentByHost(), "");
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(balance.sentByHost(), "\x1bR\r\n0A\r\nP\r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_leaves_with_the_hosts_event_loop) {
    auto& balance = bench.place("ohaus", Options().withLoad(12.34).with("line=explorer"));
    char name[] = "host";
    char* words[] = {name};
    int count = 1;
    QCoreApplication host(count, words);
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.sentByHost(), "");
    QCoreApplication::processEvents();
    EXPECT_EQ(balance.sentByHost(), "\x1bR\r\n0A\r\n");
    driver.CloseCommPort();
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, RestoreFactorySettings_ends_the_automatic_print) {
    auto& balance = bench.place(
        "ohaus", Options().withLoad(12.34).with("line=explorer").with("factory-auto-print"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
    // One line of the automatic print, before 0A, and one of P.
    EXPECT_EQ(balance.sentByInstrument(), "     12.34 g\r\n     12.34 g\r\n");
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, After_a_reset_to_other_line_settings_every_reading_fails) {
    bench.place("ohaus", Options().withLoad(12.34).with("reset-changes-line"));
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Numeric_only_lines_fail) {
    EXPECT_EQ(read(1, Options().withLoad(12.34).with("numeric-only")), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Ounces_fail) {
    EXPECT_EQ(read(1, Options().withLoad(12.34).with("unit=oz")), 0);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Kilograms_are_not_scaled) {
    EXPECT_EQ(read(1, Options().withLoad(123.4).with("unit=kg").with("readability=0.1")), 1);
    EXPECT_EQ(weight, 0.1234);
}

TEST_F(WbalanceOHAUS_SPU602EndToEnd, Loads_out_of_range_fail) {
    EXPECT_EQ(read(1, Options().withLoad(700)), 0);
}

}  // namespace
