#include "simulator/model/BalanceModel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace simulator {
namespace {

constexpr double hourInMilliseconds = 3'600'000.0;

std::string digitsOf(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

/// Whole steps of the display within `grams`, halves away from zero. The small allowance keeps a
/// load such as 1.005 g, which has no exact binary form, from being rounded the wrong way. Never a
/// negative zero, which would show as "-0.00".
double steps(double grams, double step) {
    const double exact = grams / step;
    const double allowance = std::copysign(1e-9 * std::max(1.0, std::fabs(exact)), exact);
    const double count = std::round(exact + allowance);
    return count == 0 ? 0 : count;
}

double valueIn(const Unit& unit, double grams) {
    return unit.countsPieces ? steps(grams, unit.grams) : grams / unit.grams;
}

}  // namespace

std::string Reading::digits() const {
    return digitsOf(value, decimals);
}

BalanceModel::BalanceModel(const BalanceData& data) : data_(data), random_(data.seed) {
    startWithLoad(0);
}

void BalanceModel::change(const BalanceData& data) {
    const BalanceData before = data_;
    data_ = data;
    data_.stableAfter = before.stableAfter;
    data_.refresh = before.refresh;
    showUnit(before.unit, before.gramsPerUnit, before.countsPieces);
}

void BalanceModel::showUnit(const std::string& unit, double gramsPerUnit, bool countsPieces) {
    data_.unit = unit;
    data_.gramsPerUnit = gramsPerUnit;
    data_.countsPieces = countsPieces;
}

void BalanceModel::startWithLoad(double grams) {
    load_ = settled_ = shown_ = grams;
    recent_.assign(static_cast<std::size_t>(data_.stableAfter / data_.refresh) + 1, grams);
}

void BalanceModel::setLoad(double grams) {
    scheduleLoad(now_, grams);
}

void BalanceModel::scheduleLoad(Time at, double grams) {
    const auto later = [&](const LoadChange& change) { return change.at > at; };
    changes_.insert(std::find_if(changes_.begin(), changes_.end(), later), {at, grams});
}

void BalanceModel::advance(Time now) {
    while (nextRefresh() <= now)
        refresh(nextRefresh());
    now_ = std::max(now, now_);
}

void BalanceModel::refresh(Time at) {
    while (!changes_.empty() && changes_.front().at < at) {
        load_ = changes_.front().grams;
        changes_.pop_front();
    }
    const double left = std::exp(-std::chrono::duration<double>(data_.refresh) /
                                 (std::chrono::duration<double>(data_.settling) * slowness_));
    settled_ = load_ + (settled_ - load_) * left;
    if (std::fabs(settled_ - load_) < data_.readability / 10) settled_ = load_;
    drifted_ +=
        data_.driftPerHour * static_cast<double>(data_.refresh.count()) / hourInMilliseconds;
    const double noise =
        data_.noise > 0 ? std::normal_distribution<double>(0, data_.noise)(random_) : 0;
    shown_ = settled_ + drifted_ + noise;
    recent_.pop_front();
    recent_.push_back(shown_);
    lastRefresh_ = at;
}

Reading BalanceModel::readIn(const Unit& unit) const {
    Reading reading;
    reading.range = range();
    reading.stable = isStable();
    reading.unit = unit.text;
    reading.decimals = decimalsIn(unit);
    reading.value = valueIn(unit, roundToStep(grossWeight() - tare_));
    return reading;
}

Outcome BalanceModel::zero() {
    if (range() == Reading::Range::over) return Outcome::tooHigh;
    if (range() == Reading::Range::under) return Outcome::tooLow;
    if (grossWeight() > data_.zeroRange) return Outcome::tooHigh;
    if (grossWeight() < -data_.zeroRange) return Outcome::tooLow;
    zero_ = shown_;
    tare_ = 0;
    return Outcome::done;
}

Outcome BalanceModel::tare() {
    if (range() == Reading::Range::over) return Outcome::tooHigh;
    if (range() == Reading::Range::under || roundToStep(grossWeight()) < 0) return Outcome::tooLow;
    tare_ = roundToStep(grossWeight());
    return Outcome::done;
}

void BalanceModel::restart() {
    clearTare();
    showWeight();
    switchOn();
    zero();
}

Outcome BalanceModel::presetTare(double grams) {
    if (grams > data_.capacity) return Outcome::tooHigh;
    if (grams < 0) return Outcome::tooLow;
    tare_ = roundToStep(grams);
    return Outcome::done;
}

std::string BalanceModel::tareDigits() const {
    const Unit unit{data_.unit, data_.gramsPerUnit, data_.countsPieces};
    return digitsOf(valueIn(unit, tare_), decimalsIn(unit));
}

double BalanceModel::roundToStep(double grams) const {
    return steps(grams, data_.readability) * data_.readability;
}

bool BalanceModel::isStable() const {
    const bool changed = !changes_.empty() && changes_.front().at <= now_;
    if (forcedUnstable_ || changed) return false;
    const auto [least, most] = std::minmax_element(recent_.begin(), recent_.end());
    return *most - *least <= data_.readability;
}

int BalanceModel::decimalsIn(const Unit& unit) const {
    if (unit.countsPieces) return 0;
    const double step = data_.readability / unit.grams;
    int count = 0;
    for (double whole = step; count < 9 && whole < 1 - 1e-9; whole *= 10)
        ++count;
    return count;
}

Reading::Range BalanceModel::range() const {
    if (forcedRange_ != Reading::Range::inside) return forcedRange_;
    // Steps that have no exact binary form may add up to a little more than the capacity.
    if (roundToStep(grossWeight()) > data_.capacity + data_.readability / 1000)
        return Reading::Range::over;
    if (grossWeight() < data_.lowestLoad) return Reading::Range::under;
    return Reading::Range::inside;
}

}  // namespace simulator
