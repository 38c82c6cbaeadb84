#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerPR2003.h>

#include <thread>

#include "simulator/VirtualBench.h"

using namespace std::chrono_literals;
using simulator::BalanceModel;
using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;
using testing::AllOf;
using testing::EndsWith;
using testing::Ge;
using testing::Lt;

namespace {

// 10 g a second: the pan never comes to rest.
constexpr char kMoving[] = "drift=36000";

class WbalanceMettlerPR2003EndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench.Place("mettler-pr2003", options);
    }

    /// The driver's settings with its shortest time-out, 100 ms. A silent read lasts three of them.
    void Hurry() { driver.SetCommConfig(2400, 2, 7, 0, 0, 0, 'S'); }

    /// The pan has left the reading that it began with.
    static void LetItMove() { std::this_thread::sleep_for(200ms); }

    int Read(long mode) { return driver.Weight(mode, &weight, &decimals); }
    int Show(std::string text) { return driver.DisplayMessage(text.data()); }

    VirtualBench bench;
    WbalanceMettlerPR2003 driver;
    double weight = -1;
    int decimals = -1;
};

}  // namespace

TEST_F(WbalanceMettlerPR2003EndToEnd, Ready_resets_the_balance_once) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,7E1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_balance_that_does_not_answer_the_reset_fails_everything) {
    Hurry();
    auto& balance = Have(Options().WithLoad(1).With("reset-answer=off"));
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_FALSE(balance.IsOpenedByHost());
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(driver.TurnItOn(), 0);
    EXPECT_EQ(balance.SentByHost(), "@\r\n@\r\n@\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_0_reads_a_stable_load) {
    auto& balance = Have(Options().WithLoad(-12.345));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, -12.345);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nS\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S S    -12.345 g\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_0_fails_at_the_balances_own_time_out) {
    auto& balance = Have(Options().With(kMoving).With("stability-time-out=300ms"));
    LetItMove();
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S I\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_2_reads_a_stable_load_as_1) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S S     20.000 g\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_2_reads_a_moving_load_as_2) {
    Have(Options().WithLoad(20).With(kMoving));
    LetItMove();
    EXPECT_EQ(Read(2), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(200.0)));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_1_reads_a_stable_load_at_once) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_EQ(balance.SentByHost(), "@\r\nS\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_1_averages_five_readings_of_a_moving_load) {
    auto& balance = Have(Options().WithLoad(20).With(kMoving).With("stability-time-out=100ms"));
    LetItMove();
    EXPECT_EQ(Read(1), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(200.0)));
    EXPECT_EQ(balance.SentByHost(), "@\r\nS\r\nSI\r\nSI\r\nSI\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Mode_1_takes_the_first_stable_reading_after_S_I) {
    auto& balance = Have(Options().With("stability-time-out=50ms"));
    EXPECT_EQ(driver.IsReady(), 1);
    balance.SetLoad(20);
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_THAT(balance.SentByHost(), testing::StartsWith("@\r\nS\r\nSI\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, An_overload_fails_every_mode) {
    auto& balance = Have(Options().WithLoad(5000));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(Read(mode), 0) << mode;
        EXPECT_EQ(weight, 0.0) << mode;
    }
    EXPECT_EQ(balance.SentByInstrument(), "I4 A \"1126493049\"\r\nS +\r\nS +\r\nS +\r\nS +\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Tare_takes_the_load) {
    auto& balance = Have(Options().WithLoad(100));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nT\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S    100.000 g\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Tare_fails_below_zero) {
    auto& balance = Have(Options().WithLoad(-100));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T -\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_preset_tare_counts_from_the_load_on_the_pan) {
    auto& balance = Have(Options().WithLoad(2.5));
    EXPECT_EQ(driver.TareSet(10), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nT\r\nTA 12.50 g\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S      2.500 g\r\nTA A     12.500 g\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, -10.0);
}

TEST_F(WbalanceMettlerPR2003EndToEnd,
       A_preset_tare_that_is_refused_leaves_the_load_tared_and_gives_1) {
    auto& balance = Have(Options().WithLoad(2.5));
    EXPECT_EQ(driver.TareSet(5000), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("TA L\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_preset_tare_leaves_out_a_load_that_does_not_come_to_rest) {
    Hurry();
    auto& balance = Have(Options().WithLoad(2.5).With(kMoving).With("stability-time-out=450ms"));
    LetItMove();
    EXPECT_EQ(driver.TareSet(10), 1);
    // The late answer to the tare is read as the one to the preset.
    EXPECT_EQ(balance.SentByHost(), "@\r\nT\r\nTA 10.00 g\r\n");
    EXPECT_THAT(balance.SentByInstrument(), testing::StartsWith("I4 A \"1126493049\"\r\nT I\r\n"));
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_text_stands_on_the_display_until_the_next_weight) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Show("READY"), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), "READY"); });
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 20.0);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), ""); });
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nD \"READY\"\r\nDW\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_text_that_the_display_cuts_or_refuses_counts_as_shown) {
    auto& balance = Have(Options().With("display-width=7"));
    EXPECT_EQ(Show("READY TO GO"), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("D R\r\n"));
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), "READY T"); });
}

TEST_F(WbalanceMettlerPR2003EndToEnd,
       Switched_off_it_weighs_nothing_and_switched_on_it_weighs_again) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(driver.TurnItOff(), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_FALSE(model.IsOn()); });
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(driver.TurnItOn(), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_TRUE(model.IsOn()); });
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_EQ(balance.SentByHost(), "@\r\nDW\r\nPWR 0\r\nSI\r\nPWR 1\r\nDW\r\nSI\r\n");
    EXPECT_EQ(balance.SentByInstrument(),
              "I4 A \"1126493049\"\r\nDW A\r\nPWR A\r\nS I\r\n"
              "PWR A\r\nI4 A \"1126493049\"\r\nDW A\r\nS S     20.000 g\r\n");
}

TEST_F(WbalanceMettlerPR2003EndToEnd, A_balance_that_falls_silent_fails_all_but_the_preset_tare) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Show("READY"), 1);
    balance.AddFault("silent");
    EXPECT_EQ(driver.TurnItOn(), 0);
    EXPECT_EQ(driver.TurnItOff(), 0);
    EXPECT_EQ(Show("AGAIN"), 0);
    EXPECT_TRUE(balance.IsOpenedByHost());
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_FALSE(balance.IsOpenedByHost());
    balance.ClearFaults();
    EXPECT_EQ(driver.Tare(), 1);
    balance.AddFault("silent");
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(Read(1), 0);
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(driver.TareSet(10), 1);
}

TEST_F(WbalanceMettlerPR2003EndToEnd, An_answer_that_comes_too_late_can_spoil_the_next_operation) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(driver.IsReady(), 1);
    balance.AddFault("late=450ms");
    EXPECT_EQ(driver.Tare(), 0);
    // The answer that is still on its way is taken for the one to the next command.
    EXPECT_EQ(Read(2), 0);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S     20.000 g\r\n"));
    balance.ClearFaults();
    std::this_thread::sleep_for(450ms);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerPR2003EndToEnd, Factory_settings_reach_no_balance) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_FALSE(balance.IsOpenedByHost());
}
