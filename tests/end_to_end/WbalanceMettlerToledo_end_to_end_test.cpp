#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerToledo.h>
#include <wbalance/WithLineReadiness.h>

#include <thread>

#include "simulator/VirtualBench.h"

using namespace std::chrono_literals;
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

class WbalanceMettlerToledoEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench.Place("mettler-toledo", options);
    }

    /// The driver's settings with its shortest time-out, 100 ms. A read lasts three of them.
    void Hurry() {
        for (Cwbalance* each : {static_cast<Cwbalance*>(&driver), static_cast<Cwbalance*>(&plain)})
            each->SetCommConfig(2400, 2, 7, 0, 0, 0, 'S');
    }

    /// The pan has left the reading that it began with.
    static void LetItMove() { std::this_thread::sleep_for(200ms); }

    int Read(long mode) { return driver.Weight(mode, &weight, &decimals); }
    int ReadWithoutReset(long mode) { return plain.Weight(mode, &weight, &decimals); }

    VirtualBench bench;
    WbalanceMettlerToledo driver;
    WithLineReadiness<WbalanceMettlerToledo> plain;
    double weight = -1;
    int decimals = -1;
};

}  // namespace

TEST_F(WbalanceMettlerToledoEndToEnd, Ready_hands_the_reset_over_and_sends_nothing) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.HostSettings(), UartSettings::Parse("2400,7E1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceMettlerToledoEndToEnd, A_readiness_before_a_tare_resets_twice_and_hides_the_Z_A) {
    Hurry();
    auto& balance = Have(Options().WithLoad(5));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "@\r\n@\r\nZ\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "I4 A \"1126493049\"\r\nI4 A \"1126493049\"\r\nZ A\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Weight_reads_a_stable_load_when_the_reset_is_not_answered) {
    auto& balance = Have(Options().WithLoad(12.34).With("reset-answer=off"));
    EXPECT_EQ(Read(0), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.SentByHost(), "@\r\nS\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "S S      12.34 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,7E1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceMettlerToledoEndToEnd, Weight_takes_the_4_of_an_answered_reset_for_the_weight) {
    Hurry();
    auto& balance = Have(Options().WithLoad(12.34));
    for (const long mode : {0L, 1L, 2L}) {
        decimals = -1;
        EXPECT_EQ(Read(mode), 1) << mode;
        EXPECT_EQ(weight, 4.0) << mode;
        EXPECT_EQ(decimals, -1) << mode;
    }
    EXPECT_THAT(balance.SentByInstrument(),
                EndsWith("I4 A \"1126493049\"\r\nS S      12.34 g\r\n"));
}

TEST_F(WbalanceMettlerToledoEndToEnd, Weight_with_the_lines_readiness_reads_the_weight) {
    Hurry();
    auto& balance = Have(Options().WithLoad(-12.34));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(ReadWithoutReset(mode), 1) << mode;
        EXPECT_EQ(weight, -12.34) << mode;
        EXPECT_EQ(decimals, 2) << mode;
    }
    EXPECT_EQ(balance.SentByHost(), "S\r\nS\r\nSI\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Mode_0_fails_at_the_balances_own_time_out) {
    Hurry();
    auto& balance = Have(Options().With(kMoving).With("stability-time-out=100ms"));
    LetItMove();
    EXPECT_EQ(ReadWithoutReset(0), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "S I\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Mode_2_reads_a_moving_load_as_2) {
    auto& balance = Have(Options().WithLoad(20).With(kMoving).With("reset-answer=off"));
    LetItMove();
    EXPECT_EQ(Read(2), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(200.0)));
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Mode_1_averages_five_readings_of_a_moving_load) {
    Hurry();
    auto& balance = Have(Options().WithLoad(20).With(kMoving).With("stability-time-out=50ms"));
    LetItMove();
    EXPECT_EQ(ReadWithoutReset(1), 2);
    EXPECT_THAT(weight, AllOf(Ge(20.0), Lt(300.0)));
    EXPECT_EQ(balance.SentByHost(), "S\r\nSI\r\nSI\r\nSI\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Mode_1_takes_a_load_that_has_come_to_rest_since) {
    Hurry();
    auto& balance = Have(Options().With("stability-time-out=50ms"));
    EXPECT_EQ(plain.IsReady(), 1);
    balance.SetLoad(1);
    EXPECT_EQ(ReadWithoutReset(1), 1);
    EXPECT_EQ(weight, 1.0);
    EXPECT_THAT(balance.SentByHost(), testing::StartsWith("S\r\nSI\r\n"));
}

TEST_F(WbalanceMettlerToledoEndToEnd, An_overload_fails_every_mode_with_and_without_a_reset) {
    Hurry();
    Have(Options().WithLoad(700));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(Read(mode), 0) << mode;
        EXPECT_EQ(weight, 0.0) << mode;
        EXPECT_EQ(ReadWithoutReset(mode), 0) << mode;
        EXPECT_EQ(weight, 0.0) << mode;
    }
}

TEST_F(WbalanceMettlerToledoEndToEnd, Tare_zeroes_a_load_within_the_zero_range) {
    auto& balance = Have(Options().WithLoad(5));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nZ\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "I4 A \"1126493049\"\r\nZ A\r\n");
}

TEST_F(WbalanceMettlerToledoEndToEnd, Tare_fails_for_a_load_outside_the_zero_range) {
    Hurry();
    auto& balance = Have(Options().WithLoad(100));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_THAT(balance.SentByInstrument(), EndsWith("Z +\r\n"));
}

TEST_F(WbalanceMettlerToledoEndToEnd, A_silent_balance_fails_every_operation_that_reads) {
    Hurry();
    auto& balance = Have(Options().WithLoad(5).WithFault("silent"));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(driver.Tare(), 0);
    for (const long mode : {0L, 1L, 2L})
        EXPECT_EQ(Read(mode), 0) << mode;
    EXPECT_EQ(weight, 0.0);
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceMettlerToledoEndToEnd, A_preset_tare_and_factory_settings_reach_no_balance) {
    auto& balance = Have(Options());
    EXPECT_EQ(driver.TareSet(10), 1);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_FALSE(balance.IsOpenedByHost());
}
