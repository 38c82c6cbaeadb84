#include "monitor/Statistics.h"

#include <gmock/gmock.h>

using testing::StartsWith;
using tool::Reading;
using tool::Stability;
using tool::Statistics;
using Seconds = Statistics::Seconds;

namespace {

Reading Weight(const std::string& digits, Stability stability = Stability::Stable) {
    Reading reading;
    reading.meaning = tool::Meaning::Weight;
    reading.stability = stability;
    reading.digits = digits;
    return reading;
}

TEST(Statistics, Know_extremes_mean_deviation_and_trend) {
    Statistics statistics;
    statistics.Add(Seconds(0), Weight("10"));
    statistics.Add(Seconds(1), Weight("14"));
    statistics.Add(Seconds(2), Weight("12"));
    EXPECT_EQ(statistics.Count(), 3);
    EXPECT_THAT(statistics.NumbersText("", " "), StartsWith("min 10 max 14 "));
    EXPECT_DOUBLE_EQ(statistics.Mean(), 12.0);
    EXPECT_DOUBLE_EQ(statistics.StandardDeviation(), 2.0);
    EXPECT_DOUBLE_EQ(statistics.Trend(), -2.0);
}

TEST(Statistics, Drift_is_the_slope_in_grams_a_minute) {
    Statistics statistics;
    statistics.Add(Seconds(100), Weight("50.0"));
    statistics.Add(Seconds(130), Weight("50.5"));
    statistics.Add(Seconds(160), Weight("51.0"));
    EXPECT_DOUBLE_EQ(statistics.Drift(), 1.0);
}

TEST(Statistics, One_weight_does_neither_drift_nor_deviate) {
    Statistics statistics;
    statistics.Add(Seconds(5), Weight("50"));
    EXPECT_EQ(statistics.Drift(), 0.0);
    EXPECT_EQ(statistics.Trend(), 0.0);
    EXPECT_EQ(statistics.StandardDeviation(), 0.0);
}

TEST(Statistics, A_large_tare_does_not_hide_a_small_drift_or_deviation) {
    Statistics statistics;
    for (int second = 0; second <= 60; ++second) {
        const std::string thousandths = std::to_string(1000 + second).substr(1);
        statistics.Add(Seconds(1e9 + second), Weight("1000000." + thousandths));
    }
    EXPECT_NEAR(statistics.Drift(), 0.06, 1e-7);
    EXPECT_NEAR(statistics.StandardDeviation(), 0.0177529, 1e-6);
}

TEST(Statistics, Numbers_have_the_decimals_of_the_balance_and_what_is_computed_one_more) {
    Statistics statistics;
    EXPECT_EQ(statistics.NumbersText(" g", ", "), "");
    statistics.Add(Seconds(0), Weight("123.4567"));
    statistics.Add(Seconds(60), Weight("123.4568"));
    EXPECT_EQ(statistics.NumbersText(" g", ", "),
              "min 123.4567, max 123.4568, mean 123.45675, sd 0.00007 g, drift +0.00010 g/min");
}

TEST(Statistics, A_balance_without_a_point_has_one_decimal_in_its_mean) {
    Statistics statistics;
    statistics.Add(Seconds(0), Weight("+5000"));
    statistics.Add(Seconds(60), Weight("-5001"));
    EXPECT_EQ(statistics.NumbersText("", "  "),
              "min -5001  max 5000  mean -0.5  sd 7071.8  drift -10001.0 g/min");
}

TEST(Statistics, A_drift_of_nothing_has_no_minus) {
    Statistics statistics;
    statistics.Add(Seconds(0), Weight("-0.0000"));
    statistics.Add(Seconds(1e9), Weight("-0.0001"));
    EXPECT_EQ(statistics.NumbersText("", "  "),
              "min -0.0001  max 0.0000  mean -0.00005  sd 0.00007  drift +0.00000 g/min");
}

TEST(Statistics, An_endless_number_has_no_endless_summary) {
    Statistics statistics;
    statistics.Add(Seconds(0), Weight("1." + std::string(100000, '5')));
    EXPECT_EQ(statistics.NumbersText("", "  "),
              "min 1.555555556  max 1.555555556  mean 1.5555555556  sd 0.0000000000  drift "
              "+0.0000000000 g/min");
}

TEST(Statistics, Weights_of_a_moving_pan_are_left_out_but_show_the_trend) {
    Statistics statistics;
    statistics.Add(Seconds(0), Weight("10.0"));
    statistics.Add(Seconds(1), Weight("99.99", Stability::Dynamic));
    statistics.Add(Seconds(2), Weight("10.0", Stability::Unknown));
    EXPECT_EQ(statistics.Count(), 2);
    EXPECT_EQ(statistics.DynamicText(), " (1 dynamic ones left out)");
    EXPECT_LT(statistics.Trend(), 0.0);
    EXPECT_EQ(statistics.NumbersText("", "  "),
              "min 10.0  max 10.0  mean 10.00  sd 0.00  drift +0.00 g/min");
}

TEST(Statistics, Weights_of_a_moving_pan_count_where_that_is_asked_for) {
    Statistics statistics(true);
    statistics.Add(Seconds(0), Weight("10.0"));
    EXPECT_EQ(statistics.DynamicText(), "");
    statistics.Add(Seconds(1), Weight("12.0", Stability::Dynamic));
    EXPECT_EQ(statistics.Count(), 2);
    EXPECT_THAT(statistics.NumbersText("", " "), StartsWith("min 10.0 max 12.0 "));
    EXPECT_EQ(statistics.DynamicText(), " (1 dynamic ones among them)");
}

}  // namespace
