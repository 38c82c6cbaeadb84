#include "Statistics.h"

#include <algorithm>

namespace tool {

void Statistics::Add(Seconds since, double grams) {
    if (count_ == 0) {
        minimum_ = maximum_ = last_ = firstWeight_ = grams;
        firstTime_ = since.count();
    }
    ++count_;
    minimum_ = std::min(minimum_, grams);
    maximum_ = std::max(maximum_, grams);
    beforeLast_ = last_;
    last_ = grams;
    const double time = since.count() - firstTime_;
    const double weight = grams - firstWeight_;
    sumTime_ += time;
    sumWeight_ += weight;
    sumTimeTime_ += time * time;
    sumTimeWeight_ += time * weight;
}

double Statistics::Mean() const {
    return count_ == 0 ? 0.0 : firstWeight_ + sumWeight_ / count_;
}

double Statistics::Drift() const {
    const double spread = count_ * sumTimeTime_ - sumTime_ * sumTime_;
    if (spread <= 0.0) return 0.0;
    return 60.0 * (count_ * sumTimeWeight_ - sumTime_ * sumWeight_) / spread;
}

}  // namespace tool
