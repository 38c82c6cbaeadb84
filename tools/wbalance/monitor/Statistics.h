#pragma once

#include <chrono>
#include <string>

#include "readings/Reading.h"

namespace tool {

/// What a run of weights has in common: extremes, mean, spread and drift.
class Statistics {
 public:
    using Seconds = std::chrono::duration<double>;

    /// @param countsDynamic whether dynamic weights count. Other weights always count, also those
    /// of a balance that does not tell whether they are stable
    explicit Statistics(bool countsDynamic = false) : countsDynamic_(countsDynamic) {}

    /// @param since time since any fixed moment
    void Add(Seconds since, const Reading& weight);

    /// The weights that count.
    int Count() const { return count_; }
    /// The weights that were taken while the pan moved, whether they count or not.
    int Dynamic() const { return dynamic_; }
    double Mean() const;
    /// Of a sample: 0 with fewer than two weights.
    double StandardDeviation() const;
    /// Grams a minute: the slope of the straight line that fits best. 0 with fewer than two
    /// weights.
    double Drift() const;
    /// The last weight minus the one before it, of all weights.
    double Trend() const { return last_ - beforeLast_; }

    /// " (3 dynamic ones left out)"; empty where all weights were stable.
    std::string DynamicText() const;
    /// Extremes as the balance shows them, the others with one decimal more. `unit` stands behind
    /// the weights, `gap` between one number and the next. Empty without a weight.
    std::string NumbersText(const std::string& unit, const std::string& gap) const;

 private:
    void Follow(double grams);
    void Count(Seconds since, double grams);

    bool countsDynamic_;
    int count_ = 0;
    int seen_ = 0;
    int dynamic_ = 0;
    int decimals_ = 0;
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
    // Followed weight by weight, also about the first.
    double meanWeight_ = 0.0;
    double squares_ = 0.0;  ///< of the distances from the mean
};

}  // namespace tool
