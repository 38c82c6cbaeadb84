#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerPM.h>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

class WbalanceMettlerPMEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Place(const Options& options) {
        return bench.Place("mettler-pm", options);
    }

    /// A balance whose protocol the driver has found; the log begins behind that.
    simulator::ConnectedInstrument& Detected(const Options& options) {
        auto& balance = Place(options);
        EXPECT_EQ(driver.IsReady(), 1);
        balance.ClearLog();
        return balance;
    }

    VirtualBench bench;
    WbalanceMettlerPM driver;
    double weight = -1;
    int decimals = -1;
};

const Options kSics = Options().With("protocol=mt-sics").With("serial-number=0123456");

TEST_F(WbalanceMettlerPMEndToEnd, IsReady_finds_the_standard_protocol_by_ES) {
    auto& balance = Place(Options().WithLoad(12.34));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "@\r\nSI\r\n@\r\nSI\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "ES\r\nS       12.34 g\r\nES\r\nS       12.34 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("600,7E1"));
    balance.ClearLog();
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "SI\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, Weight_in_every_mode_of_a_resting_pan_is_stable) {
    auto& balance = Detected(Options().WithLoad(-12.34));
    for (const long mode : {0L, 1L, 2L}) {
        EXPECT_EQ(driver.Weight(mode, &weight, &decimals), 1);
        EXPECT_EQ(weight, -12.34);
        EXPECT_EQ(decimals, 2);
    }
    EXPECT_EQ(balance.SentByHost(), "SI\r\nS\r\nSI\r\nS\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, Weight_of_a_moving_pan_is_dynamic_in_mode_2) {
    Detected(Options().WithLoad(100).With("noise=0.5"));
    EXPECT_EQ(driver.Weight(2, &weight, &decimals), 2);
    EXPECT_NEAR(weight, 100, 5);
}

TEST_F(WbalanceMettlerPMEndToEnd, Weight_of_a_moving_pan_is_an_average_in_mode_1) {
    auto& balance =
        Detected(Options().WithLoad(100).With("noise=0.5").With("stability-time-out=1s"));
    EXPECT_EQ(driver.Weight(1, &weight, &decimals), 2);
    EXPECT_NEAR(weight, 100, 5);
    EXPECT_EQ(balance.SentByHost(), "SI\r\nS\r\nSI\r\nSI\r\nSI\r\nSI\r\nSI\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, Weight_of_a_pan_out_of_range_fails) {
    auto& balance = Detected(Options().WithLoad(700));
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(driver.Weight(2, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "SI+\r\nSI+\r\nSI+\r\nSI+\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, Tare_takes_the_container_away) {
    auto& balance = Detected(Options().WithLoad(50));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "SI\r\nT\r\nSI\r\nS\r\n");
    EXPECT_EQ(balance.SentByInstrument(),
              "S       50.00 g\r\nS        0.00 g\r\nS        0.00 g\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, TareSet_presets_with_B) {
    auto& balance = Detected(Options());
    EXPECT_EQ(driver.TareSet(5.0), 1);
    EXPECT_EQ(balance.SentByHost(), "SI\r\nT\r\nSI\r\nS\r\nSI\r\nB 5.00\r\nSI\r\nS\r\n");
    EXPECT_EQ(balance.SentByInstrument(),
              "S        0.00 g\r\nS        0.00 g\r\nS        0.00 g\r\nS        0.00 g\r\n"
              "S       -5.00 g\r\nS       -5.00 g\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, TareSet_beyond_the_capacity_counts_as_success) {
    // The balance refuses with EL, which answers the readiness check; its 0.00 passes the check.
    auto& balance = Detected(Options());
    EXPECT_EQ(driver.TareSet(700.0), 1);
    EXPECT_NE(balance.SentByInstrument().find("EL\r\n"), std::string::npos);
}

TEST_F(WbalanceMettlerPMEndToEnd, RestoreFactorySettings_sends_nothing) {
    auto& balance = Detected(Options());
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceMettlerPMEndToEnd, A_power_cut_of_the_balance_does_not_change_the_protocol_found) {
    auto& balance = Detected(Options().WithLoad(12.34));
    balance.AddFault("power-cut@0s+1ms");
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(balance.SentByHost(), "SI\r\nS\r\n");
}

// A PM balance that is set to MT-SICS

TEST_F(WbalanceMettlerPMEndToEnd, IsReady_finds_MT_SICS_by_I4) {
    auto& balance = Place(Options(kSics).WithLoad(12.34));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByInstrument(),
              "I4 A \"0123456\"\r\nS S      12.34 g\r\n"
              "I4 A \"0123456\"\r\nS S      12.34 g\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, Detection_fails_when_the_reset_is_not_answered) {
    auto& balance = Place(Options(kSics).With("reset-answer=off"));
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_EQ(balance.SentByHost(), "@\r\n");
    EXPECT_FALSE(balance.IsOpenedByHost());
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_TareSet_adds_the_present_tare) {
    auto& balance = Detected(Options(kSics).WithLoad(2.5));
    EXPECT_EQ(driver.TareSet(5.0), 1);
    EXPECT_EQ(balance.SentByHost(), "SI\r\nT\r\nTA 7.50 g\r\n");
    EXPECT_EQ(balance.SentByInstrument(),
              "S S       2.50 g\r\nT S       2.50 g\r\nTA A       7.50 g\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_a_refused_preset_counts_as_success) {
    auto& balance = Detected(Options(kSics));
    EXPECT_EQ(driver.TareSet(700.0), 1);
    EXPECT_EQ(balance.SentByInstrument(), "S S       0.00 g\r\nT S       0.00 g\r\nTA L\r\n");
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_Tare_takes_the_container_away) {
    Detected(Options(kSics).WithLoad(50));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_a_moving_pan_counts_as_stable) {
    Detected(Options(kSics).WithLoad(100).With("noise=0.5"));
    EXPECT_EQ(driver.Weight(2, &weight, &decimals), 1);
    EXPECT_NEAR(weight, 100, 5);
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_an_overload_reads_0_00_as_stable_and_tares) {
    auto& balance = Detected(Options(kSics).WithLoad(700));
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(balance.SentByInstrument(), "S +\r\nS +\r\n");
    EXPECT_EQ(driver.Tare(), 1);
}

TEST_F(WbalanceMettlerPMEndToEnd, In_MT_SICS_a_busy_balance_reads_0_00_as_stable) {
    Detected(Options(kSics).WithLoad(50).WithFault("busy").With("stability-time-out=1s"));
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
}

}  // namespace
