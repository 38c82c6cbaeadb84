#include "simulator/model/BalanceModel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace simulator {
namespace {

constexpr double kHourInMilliseconds = 3'600'000.0;

std::string DigitsOf(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

/// Whole steps of the display within `grams`, halves away from zero. The small allowance keeps a
/// load such as 1.005 g, which has no exact binary form, from being rounded the wrong way. Never a
/// negative zero, which would show as "-0.00".
double Steps(double grams, double step) {
    const double exact = grams / step;
    const double allowance = std::copysign(1e-9 * std::max(1.0, std::fabs(exact)), exact);
    const double count = std::round(exact + allowance);
    return count == 0 ? 0 : count;
}

double ValueIn(const Unit& unit, double grams) {
    return unit.countsPieces ? Steps(grams, unit.grams) : grams / unit.grams;
}

}  // namespace

std::string Indication::Digits() const {
    return DigitsOf(value, decimals);
}

BalanceModel::BalanceModel(const BalanceData& data) : data_(data), random_(data.seed) {
    StartWithLoad(0);
}

void BalanceModel::Change(const BalanceData& data) {
    const BalanceData before = data_;
    data_ = data;
    data_.stableAfter = before.stableAfter;
    data_.refresh = before.refresh;
    data_.unit = before.unit;
    data_.gramsPerUnit = before.gramsPerUnit;
    data_.countsPieces = before.countsPieces;
}

void BalanceModel::ShowUnit(const std::string& unit, double gramsPerUnit, bool countsPieces) {
    data_.unit = unit;
    data_.gramsPerUnit = gramsPerUnit;
    data_.countsPieces = countsPieces;
    hostUnit_.reset();
}

void BalanceModel::StartWithLoad(double grams) {
    load_ = settled_ = shown_ = grams;
    recent_.assign(static_cast<std::size_t>(data_.stableAfter / data_.refresh) + 1, grams);
}

void BalanceModel::SetLoad(double grams) {
    ScheduleLoad(now_, grams);
}

void BalanceModel::ScheduleLoad(Time at, double grams) {
    const auto later = [&](const LoadChange& change) { return change.at > at; };
    changes_.insert(std::find_if(changes_.begin(), changes_.end(), later), {at, grams});
}

void BalanceModel::Advance(Time now) {
    while (NextRefresh() <= now)
        Refresh(NextRefresh());
    now_ = std::max(now, now_);
}

void BalanceModel::Refresh(Time at) {
    while (!changes_.empty() && changes_.front().at < at) {
        load_ = changes_.front().grams;
        changes_.pop_front();
    }
    const double left = std::exp(-std::chrono::duration<double>(data_.refresh) /
                                 (std::chrono::duration<double>(data_.settling) * slowness_));
    settled_ = load_ + (settled_ - load_) * left;
    if (std::fabs(settled_ - load_) < data_.readability / 10) settled_ = load_;
    drifted_ +=
        data_.driftPerHour * static_cast<double>(data_.refresh.count()) / kHourInMilliseconds;
    const double noise =
        data_.noise > 0 ? std::normal_distribution<double>(0, data_.noise)(random_) : 0;
    shown_ = settled_ + drifted_ + noise;
    recent_.pop_front();
    recent_.push_back(shown_);
    lastRefresh_ = at;
}

Indication BalanceModel::ReadIn(const Unit& unit) const {
    Indication indication;
    indication.range = Range();
    indication.stable = IsStable();
    indication.unit = unit.text;
    indication.decimals = DecimalsIn(unit);
    indication.value = ValueIn(unit, RoundToStep(GrossWeight() - tare_));
    return indication;
}

Outcome BalanceModel::Zero() {
    if (Range() == Indication::Range::Over) return Outcome::TooHigh;
    if (Range() == Indication::Range::Under) return Outcome::TooLow;
    if (GrossWeight() > data_.zeroRange) return Outcome::TooHigh;
    if (GrossWeight() < -data_.zeroRange) return Outcome::TooLow;
    zero_ = shown_;
    tare_ = 0;
    return Outcome::Done;
}

Outcome BalanceModel::Tare() {
    if (Range() == Indication::Range::Over) return Outcome::TooHigh;
    if (Range() == Indication::Range::Under || RoundToStep(GrossWeight()) < 0)
        return Outcome::TooLow;
    tare_ = RoundToStep(GrossWeight());
    return Outcome::Done;
}

void BalanceModel::Restart() {
    ClearTare();
    ShowWeight();
    SwitchOn();
    Zero();
}

Outcome BalanceModel::PresetTare(double grams) {
    if (grams > data_.capacity) return Outcome::TooHigh;
    if (grams < 0) return Outcome::TooLow;
    tare_ = RoundToStep(grams);
    return Outcome::Done;
}

std::string BalanceModel::TareDigitsIn(const Unit& unit) const {
    return DigitsOf(ValueIn(unit, tare_), DecimalsIn(unit));
}

double BalanceModel::RoundToStep(double grams) const {
    return Steps(grams, data_.readability) * data_.readability;
}

bool BalanceModel::IsStable() const {
    const bool changed = !changes_.empty() && changes_.front().at <= now_;
    if (forcedUnstable_ || changed) return false;
    const auto [least, most] = std::minmax_element(recent_.begin(), recent_.end());
    return *most - *least <= data_.readability;
}

int BalanceModel::DecimalsIn(const Unit& unit) const {
    if (unit.countsPieces) return 0;
    const double step = data_.readability / unit.grams;
    int count = 0;
    for (double whole = step; count < 9 && whole < 1 - 1e-9; whole *= 10)
        ++count;
    return count;
}

Indication::Range BalanceModel::Range() const {
    if (forcedRange_ != Indication::Range::Inside) return forcedRange_;
    // Steps that have no exact binary form may add up to a little more than the capacity.
    if (RoundToStep(GrossWeight()) > data_.capacity + data_.readability / 1000)
        return Indication::Range::Over;
    if (GrossWeight() < data_.lowestLoad) return Indication::Range::Under;
    return Indication::Range::Inside;
}

}  // namespace simulator
