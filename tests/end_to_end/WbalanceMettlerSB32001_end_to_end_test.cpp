#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerSB32001.h>

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

// 1 kg a second: the pan never comes to rest.
constexpr char kMoving[] = "drift=3600000";

class WbalanceMettlerSB32001EndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench.Place("mettler-sb32001", options);
    }

    /// The driver's settings with its shortest time-out, 100 ms. A silent read lasts three of them.
    void Hurry() { driver.SetCommConfig(2400, 2, 7, 0, 0, 0, 'S'); }

    /// The pan has left the reading that it began with.
    static void LetItMove() { std::this_thread::sleep_for(200ms); }

    int Read(long mode) { return driver.Weight(mode, &weight, &decimals); }
    int Show(std::string text) { return driver.DisplayMessage(text.data()); }

    VirtualBench bench;
    WbalanceMettlerSB32001 driver;
    double weight = -1;
    int decimals = -1;
};

}  // namespace

TEST_F(WbalanceMettlerSB32001EndToEnd, Ready_resets_the_balance_and_reads_it_once) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "I4 A \"1126493049\"\r\nS S        0.0 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,7E1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Ready_takes_an_overload_for_an_answer) {
    auto& balance = Have(Options().WithLoad(50000));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S +\r\n"));
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_balance_that_does_not_answer_the_reset_fails_everything) {
    Hurry();
    auto& balance = Have(Options().WithLoad(1).With("reset-answer=off"));
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_FALSE(balance.IsOpenedByHost());
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByHost(), "@\r\n@\r\n");
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Mode_0_reads_a_stable_load) {
    auto& balance = Have(Options().WithLoad(12345.6));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 12345.6);
    EXPECT_EQ(decimals, 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nS\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S S    12345.6 g\r\n"));
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Mode_2_reads_a_stable_load_as_1) {
    auto& balance = Have(Options().WithLoad(-20));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, -20.0);
    EXPECT_EQ(decimals, 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("S S      -20.0 g\r\n"));
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Mode_2_reads_a_moving_load_as_2) {
    Have(Options().WithLoad(20).With(kMoving));
    LetItMove();
    EXPECT_EQ(Read(2), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(20000.0)));
    EXPECT_EQ(decimals, 1);
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Mode_1_reads_a_stable_load_at_once) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nS\r\n");
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Mode_1_averages_five_readings_of_a_moving_load) {
    auto& balance = Have(Options().WithLoad(20).With(kMoving).With("stability-time-out=100ms"));
    LetItMove();
    EXPECT_EQ(Read(1), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(20000.0)));
    EXPECT_EQ(decimals, 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nS\r\nSI\r\nSI\r\nSI\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerSB32001EndToEnd, An_overload_fails_every_mode) {
    Have(Options().WithLoad(50000));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(Read(mode), 0) << mode;
        EXPECT_EQ(weight, 0.0) << mode;
    }
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Tare_takes_the_load) {
    auto& balance = Have(Options().WithLoad(100));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nT\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S      100.0 g\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerSB32001EndToEnd, Tare_fails_below_zero) {
    auto& balance = Have(Options().WithLoad(-100));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T -\r\n"));
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_preset_tare_counts_from_the_load_on_the_pan) {
    auto& balance = Have(Options().WithLoad(2.5));
    EXPECT_EQ(driver.TareSet(10), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nT\r\nTA 12.50 g\r\n");
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("T S        2.5 g\r\nTA A       12.5 g\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, -10.0);
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_preset_tare_that_is_refused_gives_1_all_the_same) {
    auto& balance = Have(Options().WithLoad(2.5));
    EXPECT_EQ(driver.TareSet(50000), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("TA L\r\n"));
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_text_stands_on_the_display_until_the_next_weight) {
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Show("READY"), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), "READY"); });
    EXPECT_EQ(Read(2), 1);
    balance.WithBalance([](BalanceModel& model) { EXPECT_EQ(model.DisplayText(), ""); });
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\nD \"READY\"\r\nDW\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_text_that_the_display_cuts_counts_as_shown) {
    auto& balance = Have(Options().With("display-width=7").With("cut-text=L"));
    EXPECT_EQ(Show("READY TO GO"), 1);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("D L\r\n"));
}

TEST_F(WbalanceMettlerSB32001EndToEnd, A_balance_that_falls_silent_fails_all_but_the_preset_tare) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Show("READY"), 1);
    balance.AddFault("silent");
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

TEST_F(WbalanceMettlerSB32001EndToEnd, Factory_settings_reach_no_balance) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_FALSE(balance.IsOpenedByHost());
}
