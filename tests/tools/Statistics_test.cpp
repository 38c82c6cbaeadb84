#include "monitor/Statistics.h"

#include <gmock/gmock.h>

using tool::Statistics;
using Seconds = Statistics::Seconds;

namespace {

TEST(Statistics, Know_extremes_mean_and_trend) {
    Statistics statistics;
    statistics.Add(Seconds(0), 10.0);
    statistics.Add(Seconds(1), 14.0);
    statistics.Add(Seconds(2), 12.0);
    EXPECT_EQ(statistics.Count(), 3);
    EXPECT_EQ(statistics.Minimum(), 10.0);
    EXPECT_EQ(statistics.Maximum(), 14.0);
    EXPECT_DOUBLE_EQ(statistics.Mean(), 12.0);
    EXPECT_DOUBLE_EQ(statistics.Trend(), -2.0);
}

TEST(Statistics, Drift_is_the_slope_in_grams_a_minute) {
    Statistics statistics;
    statistics.Add(Seconds(100), 50.0);
    statistics.Add(Seconds(130), 50.5);
    statistics.Add(Seconds(160), 51.0);
    EXPECT_DOUBLE_EQ(statistics.Drift(), 1.0);
}

TEST(Statistics, One_weight_does_not_drift) {
    Statistics statistics;
    statistics.Add(Seconds(5), 50.0);
    EXPECT_EQ(statistics.Drift(), 0.0);
    EXPECT_EQ(statistics.Trend(), 0.0);
}

TEST(Statistics, A_large_tare_does_not_hide_a_small_drift) {
    Statistics statistics;
    for (int second = 0; second <= 60; ++second)
        statistics.Add(Seconds(1e9 + second), 1e6 + second * 1e-3);
    EXPECT_NEAR(statistics.Drift(), 0.06, 1e-9);
}

}  // namespace
