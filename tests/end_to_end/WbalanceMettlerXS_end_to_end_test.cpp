#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerXS.h>

#include "simulator/VirtualBench.h"

using simulator::BalanceModel;
using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;
using testing::EndsWith;

namespace {

class WbalanceMettlerXSEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench.Place("mettler-xs", options);
    }

    int Read(long mode) { return driver.Weight(mode, &weight, &decimals); }

    VirtualBench bench;
    WbalanceMettlerXS driver;
    double weight = -1;
    int decimals = -1;
};

}  // namespace

TEST_F(WbalanceMettlerXSEndToEnd, Ready_resets_the_balance_at_9600_baud_8N1) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("9600,8N1"));
}

TEST_F(WbalanceMettlerXSEndToEnd, Every_mode_reads_all_four_decimals_of_a_stable_load) {
    auto& balance = Have(Options().WithLoad(12.3456));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(Read(mode), 1) << mode;
        EXPECT_EQ(weight, 12.3456) << mode;
    }
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nS\r\nS\r\nSI\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S S    12.3456 g\r\n"));
}

TEST_F(WbalanceMettlerXSEndToEnd, Tare_takes_the_load) {
    auto& balance = Have(Options().WithLoad(12.3456));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S    12.3456 g\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerXSEndToEnd,
       A_preset_tare_rounds_the_load_that_it_counts_from_to_two_decimals) {
    auto& balance = Have(Options().WithLoad(2.5044));
    EXPECT_EQ(driver.TareSet(10), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nT\r\nTA 12.50 g\r\n");
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, -9.9956);
}

TEST_F(WbalanceMettlerXSEndToEnd, A_text_stands_on_the_display_until_the_next_weight) {
    auto& balance = Have(Options().WithLoad(20));
    std::string text = "READY";
    EXPECT_EQ(driver.DisplayMessage(text.data()), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), "READY"); });
    EXPECT_EQ(Read(2), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), ""); });
}

TEST_F(WbalanceMettlerXSEndToEnd, It_is_switched_off_and_on) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(driver.TurnItOff(), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_FALSE(model.IsOn()); });
    EXPECT_EQ(driver.TurnItOn(), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_TRUE(model.IsOn()); });
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 20.0);
}

TEST_F(WbalanceMettlerXSEndToEnd, The_settings_of_the_PR_line_on_the_balance_fail) {
    driver.SetCommConfig(9600, 0, 8, 0, 0, 0, 'S');
    auto& balance = Have(Options().At("2400,7E1"));
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_FALSE(balance.IsOpenedByHost());
}
