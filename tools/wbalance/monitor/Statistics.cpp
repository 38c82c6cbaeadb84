#include "Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tool {
namespace {

constexpr int kMostDecimals = 9;  // more than any balance has

// With a sign where `format` asks for one, but never "-0.00".
std::string Number(const char* format, int decimals, double value) {
    char text[400];
    const double unit = std::pow(10.0, -decimals);
    std::snprintf(text, sizeof text, format, decimals, std::fabs(value) < unit / 2 ? 0.0 : value);
    return text;
}

}  // namespace

void Statistics::Add(Seconds since, const Reading& weight) {
    const bool dynamic = weight.stability == Stability::Dynamic;
    Follow(weight.Value());
    if (dynamic) ++dynamic_;
    if (dynamic && !countsDynamic_) return;
    decimals_ = std::clamp(weight.Decimals(), decimals_, kMostDecimals);
    Count(since, weight.Value());
}

void Statistics::Follow(double grams) {
    beforeLast_ = seen_ == 0 ? grams : last_;
    last_ = grams;
    ++seen_;
}

void Statistics::Count(Seconds since, double grams) {
    if (count_ == 0) {
        minimum_ = maximum_ = firstWeight_ = grams;
        firstTime_ = since.count();
    }
    ++count_;
    minimum_ = std::min(minimum_, grams);
    maximum_ = std::max(maximum_, grams);
    const double time = since.count() - firstTime_;
    const double weight = grams - firstWeight_;
    const double aside = weight - meanWeight_;
    meanWeight_ += aside / count_;
    squares_ += aside * (weight - meanWeight_);
    sumTime_ += time;
    sumWeight_ += weight;
    sumTimeTime_ += time * time;
    sumTimeWeight_ += time * weight;
}

double Statistics::Mean() const {
    return firstWeight_ + meanWeight_;
}

double Statistics::StandardDeviation() const {
    return count_ < 2 ? 0.0 : std::sqrt(squares_ / (count_ - 1));
}

double Statistics::Drift() const {
    const double spread = count_ * sumTimeTime_ - sumTime_ * sumTime_;
    if (spread <= 0.0) return 0.0;
    return 60.0 * (count_ * sumTimeWeight_ - sumTime_ * sumWeight_) / spread;
}

std::string Statistics::DynamicText() const {
    if (dynamic_ == 0) return "";
    return " (" + std::to_string(dynamic_) + " dynamic ones " +
           (countsDynamic_ ? "among them)" : "left out)");
}

std::string Statistics::NumbersText(const std::string& unit, const std::string& gap) const {
    if (count_ == 0) return "";
    const int finer = decimals_ + 1;
    return "min " + Number("%.*f", decimals_, minimum_) + gap + "max " +
           Number("%.*f", decimals_, maximum_) + gap + "mean " + Number("%.*f", finer, Mean()) +
           gap + "sd " + Number("%.*f", finer, StandardDeviation()) + unit + gap + "drift " +
           Number("%+.*f", finer, Drift()) + " g/min";
}

}  // namespace tool
