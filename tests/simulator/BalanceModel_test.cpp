#include "simulator/model/BalanceModel.h"

#include <gtest/gtest.h>

using simulator::BalanceData;
using simulator::BalanceModel;
using simulator::Indication;
using simulator::Outcome;
using namespace std::chrono_literals;

namespace {

BalanceModel BalanceWith(double load, double readability = 0.01) {
    BalanceData data;
    data.capacity = 610;
    data.zeroRange = 12;
    data.lowestLoad = -20;
    data.readability = readability;
    BalanceModel model(data);
    model.StartWithLoad(load);
    return model;
}

std::string Shown(double load, double readability) {
    return BalanceWith(load, readability).Read().Digits();
}

}  // namespace

TEST(BalanceModel, Shows_the_load_in_steps_of_its_readability) {
    EXPECT_EQ(Shown(12.344, 0.01), "12.34");
    EXPECT_EQ(Shown(1.005, 0.01), "1.01");
    EXPECT_EQ(Shown(12.344, 0.05), "12.35");
    EXPECT_EQ(Shown(12.344, 0.0001), "12.3440");
    EXPECT_EQ(Shown(12.5, 1), "13");
    EXPECT_EQ(Shown(12.5, 5), "15");
}

TEST(BalanceModel, Shows_a_weight_in_another_unit_with_the_decimals_of_its_readability) {
    BalanceModel model = BalanceWith(12.34);
    model.ShowUnit("kg", 1000);
    EXPECT_EQ(model.Read().Digits(), "0.01234");
    EXPECT_EQ(model.Read().unit, "kg");
    model.ShowUnit("mg", 0.001);
    EXPECT_EQ(model.Read().Digits(), "12340");
    model.ShowUnit("oz", 28.349523125);
    EXPECT_EQ(model.Read().Digits(), "0.4353");
}

TEST(BalanceModel, Counts_whole_pieces) {
    BalanceModel model = BalanceWith(12.34);
    model.ShowUnit("PCS", 2.5, true);
    EXPECT_EQ(model.Read().Digits(), "5");
    EXPECT_EQ(model.Read().unit, "PCS");
    model.StartWithLoad(-1);
    EXPECT_EQ(model.Read().Digits(), "0");
    model.StartWithLoad(12.34);
    model.Tare();
    EXPECT_EQ(model.TareDigits(), "5");
}

TEST(BalanceModel, Keeps_the_unit_when_it_becomes_another_kind) {
    BalanceModel model = BalanceWith(12.34);
    model.ShowUnit("kg", 1000);
    BalanceData coarser;
    coarser.readability = 1;
    model.Change(coarser);
    EXPECT_EQ(model.Read().Digits(), "0.012");
}

TEST(BalanceModel, Never_shows_a_negative_zero) {
    EXPECT_EQ(Shown(-0.004, 0.01), "0.00");
    EXPECT_EQ(Shown(-0.006, 0.01), "-0.01");
}

TEST(BalanceModel, Shows_another_unit_with_the_decimals_that_its_step_needs) {
    BalanceData data;
    data.capacity = 32000;
    data.readability = 0.5;
    data.unit = "kg";
    data.gramsPerUnit = 1000;
    BalanceModel model(data);
    model.StartWithLoad(12345.6);
    EXPECT_EQ(model.Read().Digits(), "12.3455");
    EXPECT_EQ(model.Read().unit, "kg");
}

TEST(BalanceModel, A_load_that_was_always_there_is_stable_at_once) {
    EXPECT_TRUE(BalanceWith(100).Read().stable);
}

TEST(BalanceModel, A_new_load_settles_and_is_stable_only_then) {
    BalanceModel model = BalanceWith(0);
    model.SetLoad(100);
    model.Advance(50ms);
    EXPECT_FALSE(model.Read().stable);
    EXPECT_GT(model.Read().value, 20);
    EXPECT_LT(model.Read().value, 40);
    model.Advance(3000ms);
    EXPECT_TRUE(model.Read().stable);
    EXPECT_EQ(model.Read().Digits(), "100.00");
}

TEST(BalanceModel, Follows_a_script_of_loads) {
    BalanceModel model = BalanceWith(5);
    model.ScheduleLoad(20000ms, 0);
    model.ScheduleLoad(10000ms, 50);
    model.Advance(9000ms);
    EXPECT_EQ(model.Read().Digits(), "5.00");
    model.Advance(19000ms);
    EXPECT_EQ(model.Read().Digits(), "50.00");
    model.Advance(29000ms);
    EXPECT_EQ(model.Read().Digits(), "0.00");
}

TEST(BalanceModel, Reads_the_same_whether_time_passes_in_one_step_or_in_many) {
    BalanceModel atOnce = BalanceWith(0);
    BalanceModel slowly = BalanceWith(0);
    atOnce.SetLoad(77);
    slowly.SetLoad(77);
    atOnce.Advance(400ms);
    for (int i = 1; i <= 400; ++i)
        slowly.Advance(i * 1ms);
    EXPECT_EQ(atOnce.Read().Digits(), slowly.Read().Digits());
}

TEST(BalanceModel, Noise_above_the_step_keeps_it_unstable_and_is_the_same_in_every_run) {
    BalanceData data;
    data.noise = 0.1;
    BalanceModel first(data);
    BalanceModel second(data);
    first.Advance(5000ms);
    second.Advance(5000ms);
    EXPECT_FALSE(first.Read().stable);
    EXPECT_EQ(first.Read().Digits(), second.Read().Digits());
    EXPECT_NE(first.Read().Digits(), "0.00");
}

TEST(BalanceModel, Drift_creeps_by_its_rate) {
    BalanceData data;
    data.driftPerHour = 0.5;
    BalanceModel model(data);
    model.Advance(3600s);
    EXPECT_EQ(model.Read().Digits(), "0.50");
    EXPECT_TRUE(model.Read().stable);
}

TEST(BalanceModel, Zero_within_its_range_clears_load_and_tare) {
    BalanceModel model = BalanceWith(12);
    model.PresetTare(3);
    EXPECT_EQ(model.Zero(), Outcome::Done);
    EXPECT_EQ(model.Read().Digits(), "0.00");
    EXPECT_EQ(model.TareDigits(), "0.00");
}

TEST(BalanceModel, Zero_outside_its_range_is_refused_and_changes_nothing) {
    BalanceModel heavy = BalanceWith(12.01);
    EXPECT_EQ(heavy.Zero(), Outcome::TooHigh);
    EXPECT_EQ(heavy.Read().Digits(), "12.01");
    EXPECT_EQ(BalanceWith(-12.01).Zero(), Outcome::TooLow);
}

TEST(BalanceModel, Tare_takes_the_load_and_shows_the_net) {
    BalanceModel model = BalanceWith(100);
    EXPECT_EQ(model.Tare(), Outcome::Done);
    EXPECT_EQ(model.TareDigits(), "100.00");
    EXPECT_EQ(model.Read().Digits(), "0.00");
    model.SetLoad(0);
    model.Advance(5000ms);
    EXPECT_EQ(model.Read().Digits(), "-100.00");
}

TEST(BalanceModel, Tare_below_zero_is_refused) {
    EXPECT_EQ(BalanceWith(-1).Tare(), Outcome::TooLow);
}

TEST(BalanceModel, Preset_tare_may_be_anything_from_zero_to_the_capacity) {
    BalanceModel model = BalanceWith(100);
    EXPECT_EQ(model.PresetTare(30), Outcome::Done);
    EXPECT_EQ(model.Read().Digits(), "70.00");
    EXPECT_EQ(model.PresetTare(610.01), Outcome::TooHigh);
    EXPECT_EQ(model.PresetTare(-0.01), Outcome::TooLow);
    EXPECT_EQ(model.TareDigits(), "30.00");
    model.ClearTare();
    EXPECT_EQ(model.Read().Digits(), "100.00");
}

TEST(BalanceModel, Load_above_the_capacity_is_overload_and_below_the_lowest_underload) {
    EXPECT_EQ(BalanceWith(610).Read().range, Indication::Range::Inside);
    EXPECT_EQ(BalanceWith(610.01).Read().range, Indication::Range::Over);
    EXPECT_EQ(BalanceWith(-20).Read().range, Indication::Range::Inside);
    EXPECT_EQ(BalanceWith(-20.01).Read().range, Indication::Range::Under);
    EXPECT_EQ(BalanceWith(700).Tare(), Outcome::TooHigh);
}

TEST(BalanceModel, A_forced_range_shows_whatever_the_load_is) {
    BalanceModel model = BalanceWith(1);
    model.ForceRange(Indication::Range::Over);
    EXPECT_EQ(model.Read().range, Indication::Range::Over);
    EXPECT_EQ(model.Zero(), Outcome::TooHigh);
}
