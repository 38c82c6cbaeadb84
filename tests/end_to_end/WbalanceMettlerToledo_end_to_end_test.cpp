#include <gtest/gtest.h>
#include <wbalance/WbalanceMettlerToledo.h>

#include "simulator/VirtualBench.h"

using simulator::LineSettings;
using simulator::Options;
using simulator::VirtualBench;

TEST(WbalanceMettlerToledoEndToEnd, Weight_reads_a_stable_load_when_the_reset_is_not_answered) {
    VirtualBench bench;
    auto& balance =
        bench.place("mettler-toledo", Options().withLoad(12.34).with("reset-answer=off"));
    WbalanceMettlerToledo driver;
    double weight = 0;
    int decimals = 0;
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.sentByHost(), "@\r\nS\r\n");
    EXPECT_EQ(balance.sentByInstrument(), "S S      12.34 g\r\n");
    EXPECT_EQ(balance.settingsOfLastCommand(), LineSettings::parse("2400,7E1"));
}

TEST(WbalanceMettlerToledoEndToEnd, Weight_takes_the_4_of_an_answered_reset_for_the_weight) {
    VirtualBench bench;
    bench.place("mettler-toledo", Options().withLoad(12.34));
    WbalanceMettlerToledo driver;
    double weight = 0;
    int decimals = 0;
    EXPECT_EQ(driver.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 4.0);
}

TEST(WbalanceMettlerToledoEndToEnd, Tare_zeroes_a_load_within_the_zero_range) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().withLoad(5));
    WbalanceMettlerToledo driver;
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.sentByInstrument(), "I4 A \"1126493049\"\r\nZ A\r\n");
}
