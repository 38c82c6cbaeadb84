#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/WbalanceRadwag.h>

#include <thread>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::Ge;
using testing::Lt;
using testing::StartsWith;

namespace {

// 10 g a second: the pan never comes to rest.
constexpr char kMoving[] = "drift=36000";

class WbalanceRadwagEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench.Place("radwag", options);
    }

    /// The driver's settings with its shortest time-out, 100 ms. A read lasts three of them.
    void Hurry() { driver.SetCommConfig(9600, 2, 7, 0, 0, 0, 'S'); }

    /// The pan has left the reading that it began with.
    static void LetItMove() { std::this_thread::sleep_for(200ms); }

    int Read(long mode) { return driver.Weight(mode, &weight, &decimals); }

    VirtualBench bench;
    WbalanceRadwag driver;
    double weight = -1;
    int decimals = -1;
};

}  // namespace

TEST_F(WbalanceRadwagEndToEnd, Ready_opens_the_line_and_sends_nothing) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_TRUE(balance.IsOpenedByHost());
    EXPECT_EQ(balance.HostSettings(), UartSettings::Parse("9600,7E1"));
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_0_reads_a_stable_load) {
    auto& balance = Have(Options().WithLoad(-12.34));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, -12.34);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.SentByHost(), "S\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "S A\r\nS    -    12.34 g  \r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("9600,7E1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceRadwagEndToEnd, Mode_0_reads_on_until_the_pan_comes_to_rest) {
    Hurry();
    auto& balance = Have(Options());
    balance.SetLoad(1);
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 1.0);
    EXPECT_EQ(balance.SentByHost(), "S\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_0_fails_at_the_balances_own_time_out) {
    Hurry();
    auto& balance = Have(Options().With("stability-time-out=500ms").WithFault("busy"));
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "S A\r\nS E\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_0_fails_at_a_time_out_that_comes_with_the_confirmation) {
    Hurry();
    auto& balance = Have(Options().With("stability-time-out=50ms").WithFault("busy"));
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(balance.SentByInstrument(), "S A\r\nS E\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_2_reads_at_once_and_reports_a_moving_pan_as_1) {
    auto& balance = Have(Options().WithLoad(20).With(kMoving));
    LetItMove();
    EXPECT_EQ(Read(2), 1);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(200.0)));
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.SentByHost(), "SI\r\n");
    EXPECT_THAT(balance.SentByInstrument(), StartsWith("SI ?  "));
}

TEST_F(WbalanceRadwagEndToEnd, Mode_2_gives_up_while_the_balance_is_busy) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20).WithFault("busy"));
    EXPECT_EQ(Read(2), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "SI I\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_1_reads_a_stable_load_with_one_command) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20));
    EXPECT_EQ(Read(1), 1);
    EXPECT_EQ(weight, 20.0);
    EXPECT_EQ(balance.SentByHost(), "S\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Mode_1_reads_at_once_when_the_pan_does_not_come_to_rest) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20).With(kMoving).With("stability-time-out=50ms"));
    LetItMove();
    EXPECT_EQ(Read(1), 1);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(200.0)));
    EXPECT_EQ(balance.SentByHost(), "S\r\nSI\r\n");
    EXPECT_THAT(balance.SentByInstrument(), StartsWith("S A\r\nS E\r\nSI ?  "));
}

TEST_F(WbalanceRadwagEndToEnd, Tare_takes_the_load) {
    auto& balance = Have(Options().WithLoad(100));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "T A\r\nT D\r\n");
    Hurry();
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceRadwagEndToEnd, One_tare_fails_below_zero) {
    Hurry();
    auto& balance = Have(Options().WithLoad(-5));
    EXPECT_EQ(driver._Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "T\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "T A\r\nT v\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Zero_takes_a_small_load) {
    Hurry();
    auto& balance = Have(Options().WithLoad(5));
    EXPECT_EQ(driver.Zero(), 1);
    EXPECT_EQ(balance.SentByHost(), "Z\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "Z A\r\nZ D\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Tare_below_zero_becomes_a_zero_and_the_host_sees_success) {
    Hurry();
    auto& balance = Have(Options().WithLoad(-5));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T\r\nZ\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "T A\r\nT v\r\nZ A\r\nZ D\r\n");
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceRadwagEndToEnd, Tare_far_below_zero_fails_after_three_commands) {
    Hurry();
    auto& balance = Have(Options().WithLoad(-100));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "T\r\nZ\r\nT\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "T A\r\nT v\r\nZ A\r\nZ ^\r\nT A\r\nT v\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, Tare_that_waits_in_the_balance_gets_the_zero_refused) {
    Hurry();
    auto& balance = Have(Options().WithFault("busy"));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "T\r\nZ\r\nT\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "T A\r\nZ I\r\nT I\r\n");
}

TEST_F(WbalanceRadwagEndToEnd, An_overloaded_balance_reads_0_as_a_good_weight) {
    Hurry();
    auto& balance = Have(Options().WithLoad(5000));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(Read(2), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "S A\r\nS  ^       0.00 g  \r\nSI ^       0.00 g  \r\n");
}

TEST_F(WbalanceRadwagEndToEnd, A_frame_with_one_blank_more_reads_the_same) {
    Hurry();
    Have(Options().WithLoad(-8.5).With("frame=22"));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, -8.5);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceRadwagEndToEnd, A_preset_tare_and_factory_settings_reach_no_balance) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.TareSet(10), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_FALSE(balance.IsOpenedByHost());
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceRadwagEndToEnd, A_silent_balance_fails_every_operation) {
    Hurry();
    auto& balance = Have(Options().WithFault("silent"));
    EXPECT_EQ(Read(1), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "S\r\nSI\r\nT\r\nZ\r\nT\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "");
}

TEST_F(WbalanceRadwagEndToEnd, Other_line_settings_on_the_balance_fail) {
    Hurry();
    Have(Options().WithLoad(20).At("2400,8N1"));
    EXPECT_EQ(Read(0), 0);
    EXPECT_EQ(weight, 0.0);
}
