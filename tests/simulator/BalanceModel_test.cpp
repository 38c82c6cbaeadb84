#include "simulator/model/BalanceModel.h"

#include <gtest/gtest.h>

using simulator::BalanceData;
using simulator::BalanceModel;
using simulator::Outcome;
using simulator::Reading;
using namespace std::chrono_literals;

namespace {

BalanceModel balanceWith(double load, double readability = 0.01) {
    BalanceData data;
    data.capacity = 610;
    data.zeroRange = 12;
    data.lowestLoad = -20;
    data.readability = readability;
    BalanceModel model(data);
    model.startWithLoad(load);
    return model;
}

std::string shown(double load, double readability) {
    return balanceWith(load, readability).read().digits();
}

}  // namespace

TEST(BalanceModel, Shows_the_load_in_steps_of_its_readability) {
    EXPECT_EQ(shown(12.344, 0.01), "12.34");
    EXPECT_EQ(shown(1.005, 0.01), "1.01");
    EXPECT_EQ(shown(12.344, 0.05), "12.35");
    EXPECT_EQ(shown(12.344, 0.0001), "12.3440");
    EXPECT_EQ(shown(12.5, 1), "13");
    EXPECT_EQ(shown(12.5, 5), "15");
}

TEST(BalanceModel, Shows_a_weight_in_another_unit_with_the_decimals_of_its_readability) {
    BalanceModel model = balanceWith(12.34);
    model.showUnit("kg", 1000);
    EXPECT_EQ(model.read().digits(), "0.01234");
    EXPECT_EQ(model.read().unit, "kg");
    model.showUnit("mg", 0.001);
    EXPECT_EQ(model.read().digits(), "12340");
    model.showUnit("oz", 28.349523125);
    EXPECT_EQ(model.read().digits(), "0.4353");
}

TEST(BalanceModel, Counts_whole_pieces) {
    BalanceModel model = balanceWith(12.34);
    model.showUnit("PCS", 2.5, true);
    EXPECT_EQ(model.read().digits(), "5");
    EXPECT_EQ(model.read().unit, "PCS");
    model.startWithLoad(-1);
    EXPECT_EQ(model.read().digits(), "0");
    model.startWithLoad(12.34);
    model.tare();
    EXPECT_EQ(model.tareDigits(), "5");
}

TEST(BalanceModel, Keeps_the_unit_when_it_becomes_another_kind) {
    BalanceModel model = balanceWith(12.34);
    model.showUnit("kg", 1000);
    BalanceData coarser;
    coarser.readability = 1;
    model.change(coarser);
    EXPECT_EQ(model.read().digits(), "0.012");
}

TEST(BalanceModel, Never_shows_a_negative_zero) {
    EXPECT_EQ(shown(-0.004, 0.01), "0.00");
    EXPECT_EQ(shown(-0.006, 0.01), "-0.01");
}

TEST(BalanceModel, Shows_another_unit_with_the_decimals_that_its_step_needs) {
    BalanceData data;
    data.capacity = 32000;
    data.readability = 0.5;
    data.unit = "kg";
    data.gramsPerUnit = 1000;
    BalanceModel model(data);
    model.startWithLoad(12345.6);
    EXPECT_EQ(model.read().digits(), "12.3455");
    EXPECT_EQ(model.read().unit, "kg");
}

TEST(BalanceModel, A_load_that_was_always_there_is_stable_at_once) {
    EXPECT_TRUE(balanceWith(100).read().stable);
}

TEST(BalanceModel, A_new_load_settles_and_is_stable_only_then) {
    BalanceModel model = balanceWith(0);
    model.setLoad(100);
    model.advance(50ms);
    EXPECT_FALSE(model.read().stable);
    EXPECT_GT(model.read().value, 20);
    EXPECT_LT(model.read().value, 40);
    model.advance(3000ms);
    EXPECT_TRUE(model.read().stable);
    EXPECT_EQ(model.read().digits(), "100.00");
}

TEST(BalanceModel, Follows_a_script_of_loads) {
    BalanceModel model = balanceWith(5);
    model.scheduleLoad(20000ms, 0);
    model.scheduleLoad(10000ms, 50);
    model.advance(9000ms);
    EXPECT_EQ(model.read().digits(), "5.00");
    model.advance(19000ms);
    EXPECT_EQ(model.read().digits(), "50.00");
    model.advance(29000ms);
    EXPECT_EQ(model.read().digits(), "0.00");
}

TEST(BalanceModel, Reads_the_same_whether_time_passes_in_one_step_or_in_many) {
    BalanceModel atOnce = balanceWith(0);
    BalanceModel slowly = balanceWith(0);
    atOnce.setLoad(77);
    slowly.setLoad(77);
    atOnce.advance(400ms);
    for (int i = 1; i <= 400; ++i)
        slowly.advance(i * 1ms);
    EXPECT_EQ(atOnce.read().digits(), slowly.read().digits());
}

TEST(BalanceModel, Noise_above_the_step_keeps_it_unstable_and_is_the_same_in_every_run) {
    BalanceData data;
    data.noise = 0.1;
    BalanceModel first(data);
    BalanceModel second(data);
    first.advance(5000ms);
    second.advance(5000ms);
    EXPECT_FALSE(first.read().stable);
    EXPECT_EQ(first.read().digits(), second.read().digits());
    EXPECT_NE(first.read().digits(), "0.00");
}

TEST(BalanceModel, Drift_creeps_by_its_rate) {
    BalanceData data;
    data.driftPerHour = 0.5;
    BalanceModel model(data);
    model.advance(3600s);
    EXPECT_EQ(model.read().digits(), "0.50");
    EXPECT_TRUE(model.read().stable);
}

TEST(BalanceModel, Zero_within_its_range_clears_load_and_tare) {
    BalanceModel model = balanceWith(12);
    model.presetTare(3);
    EXPECT_EQ(model.zero(), Outcome::done);
    EXPECT_EQ(model.read().digits(), "0.00");
    EXPECT_EQ(model.tareDigits(), "0.00");
}

TEST(BalanceModel, Zero_outside_its_range_is_refused_and_changes_nothing) {
    BalanceModel heavy = balanceWith(12.01);
    EXPECT_EQ(heavy.zero(), Outcome::tooHigh);
    EXPECT_EQ(heavy.read().digits(), "12.01");
    EXPECT_EQ(balanceWith(-12.01).zero(), Outcome::tooLow);
}

TEST(BalanceModel, Tare_takes_the_load_and_shows_the_net) {
    BalanceModel model = balanceWith(100);
    EXPECT_EQ(model.tare(), Outcome::done);
    EXPECT_EQ(model.tareDigits(), "100.00");
    EXPECT_EQ(model.read().digits(), "0.00");
    model.setLoad(0);
    model.advance(5000ms);
    EXPECT_EQ(model.read().digits(), "-100.00");
}

TEST(BalanceModel, Tare_below_zero_is_refused) {
    EXPECT_EQ(balanceWith(-1).tare(), Outcome::tooLow);
}

TEST(BalanceModel, Preset_tare_may_be_anything_from_zero_to_the_capacity) {
    BalanceModel model = balanceWith(100);
    EXPECT_EQ(model.presetTare(30), Outcome::done);
    EXPECT_EQ(model.read().digits(), "70.00");
    EXPECT_EQ(model.presetTare(610.01), Outcome::tooHigh);
    EXPECT_EQ(model.presetTare(-0.01), Outcome::tooLow);
    EXPECT_EQ(model.tareDigits(), "30.00");
    model.clearTare();
    EXPECT_EQ(model.read().digits(), "100.00");
}

TEST(BalanceModel, Load_above_the_capacity_is_overload_and_below_the_lowest_underload) {
    EXPECT_EQ(balanceWith(610).read().range, Reading::Range::inside);
    EXPECT_EQ(balanceWith(610.01).read().range, Reading::Range::over);
    EXPECT_EQ(balanceWith(-20).read().range, Reading::Range::inside);
    EXPECT_EQ(balanceWith(-20.01).read().range, Reading::Range::under);
    EXPECT_EQ(balanceWith(700).tare(), Outcome::tooHigh);
}

TEST(BalanceModel, A_forced_range_shows_whatever_the_load_is) {
    BalanceModel model = balanceWith(1);
    model.forceRange(Reading::Range::over);
    EXPECT_EQ(model.read().range, Reading::Range::over);
    EXPECT_EQ(model.zero(), Outcome::tooHigh);
}
