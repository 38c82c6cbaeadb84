#pragma once

#include <chrono>

namespace tool {

/// What a run of weights has in common: extremes, mean and drift.
class Statistics {
 public:
    using Seconds = std::chrono::duration<double>;

    /// @param since time since any fixed moment
    void Add(Seconds since, double grams);

    int Count() const { return count_; }
    double Minimum() const { return minimum_; }
    double Maximum() const { return maximum_; }
    double Mean() const;
    /// Grams a minute: the slope of the straight line that fits best. 0 with fewer than two
    /// weights.
    double Drift() const;
    /// The last weight minus the one before it.
    double Trend() const { return last_ - beforeLast_; }

 private:
    int count_ = 0;
    double minimum_ = 0.0;
    double maximum_ = 0.0;
    double last_ = 0.0;
    double beforeLast_ = 0.0;
    // Sums about the first weight and its time, so that large numbers do not cancel.
    double firstTime_ = 0.0;
    double firstWeight_ = 0.0;
    double sumTime_ = 0.0;
    double sumWeight_ = 0.0;
    double sumTimeTime_ = 0.0;
    double sumTimeWeight_ = 0.0;
};

}  // namespace tool
