#include "Measurement.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Fields.h"

namespace tool {
namespace {

// Drivers that fall back to an average take this many readings and always divide by it.
constexpr std::size_t kAveraged = 5;

bool Same(double a, double b) {
    const double greatest = std::max({1.0, std::fabs(a), std::fabs(b)});
    return std::isfinite(greatest) && std::fabs(a - b) <= 1e-9 * greatest;
}

std::string DigitsOf(double value, int decimals) {
    const int length = std::snprintf(nullptr, 0, "%.*f", decimals, value);
    std::string digits(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(digits.data(), digits.size(), "%.*f", decimals, value);
    digits.pop_back();
    return digits;
}

// The answers to the command that was repeated at the end.
std::vector<Reading> LastReadings(const DriverInfo& driver,
                                  const std::vector<WireExchange>& exchanges) {
    std::vector<Reading> readings;
    for (auto exchange = exchanges.rbegin(); exchange != exchanges.rend(); ++exchange) {
        if (exchange->command != exchanges.back().command || readings.size() == kAveraged) break;
        if (!exchange->answer.empty()) readings.push_back(driver.interpret(exchange->answer));
    }
    return readings;
}

Reading Mean(const std::vector<Reading>& readings) {
    double sum = 0.0;
    int decimals = 0;
    for (const auto& reading : readings) {
        sum += reading.Value();
        decimals = std::max(decimals, reading.Decimals());
    }
    Reading mean = readings.front();
    mean.stability = Stability::Dynamic;
    mean.digits = DigitsOf(sum / kAveraged, decimals);
    mean.remark = "mean of 5 readings";
    return mean;
}

bool AllAreWeights(const std::vector<Reading>& readings) {
    return std::all_of(readings.begin(), readings.end(),
                       [](const Reading& reading) { return reading.IsWeight(); });
}

Reading IncompleteAverage(std::size_t answered) {
    return NoWeight(Meaning::NotStable,
                    "only " + std::to_string(answered) +
                        " of 5 readings were answered, and the driver counts the others as zero");
}

// Digits of the answer that the driver left out, or a number that it found somewhere else.
Reading Contradiction(Reading reading, double taken) {
    char number[64];
    std::snprintf(number, sizeof number, "%.10g", taken);
    const std::string digits =
        reading.digits.substr(reading.digits.find_first_not_of('+') == 0 ? 0 : 1);
    reading.meaning = digits.rfind(number, 0) == 0 ? Meaning::Truncated : Meaning::NotUnderstood;
    reading.remark = "the driver reads it as " + std::string(number);
    return reading;
}

Reading Accepted(const DriverInfo& driver, const WireExchanges& wire, const WireExchange& last,
                 double taken) {
    const Reading reading = driver.interpret(last.answer);
    if (!reading.IsWeight()) return reading;
    if (Same(reading.Value(), taken)) return reading;
    const auto readings = LastReadings(driver, wire.exchanges);
    if (!AllAreWeights(readings) || reading.stability != Stability::Dynamic)
        return Contradiction(reading, taken);
    double sum = 0.0;
    for (const auto& one : readings)
        sum += one.Value();
    if (!Same(sum / kAveraged, taken)) return Contradiction(reading, taken);
    return readings.size() == kAveraged ? Mean(readings) : IncompleteAverage(readings.size());
}

Reading Unanswered(const Reading& earlier) {
    if (!earlier.IsWeight() && earlier.meaning != Meaning::NotUnderstood) return earlier;
    return NoWeight(Meaning::NotStable,
                    "earlier commands were answered, this one not: the balance may be waiting for "
                    "stability");
}

Reading Rejected(const DriverInfo& driver, const WireExchanges& wire, const WireExchange& last) {
    Reading reading = driver.interpret(last.answer);
    if (&last != &wire.exchanges.back()) return Unanswered(reading);
    if (!reading.IsWeight()) return reading;
    if (reading.stability == Stability::Dynamic) {
        reading.meaning = Meaning::NotStable;
    } else {
        reading.meaning = Meaning::NotUnderstood;
        reading.remark = "the driver does not take this answer";
    }
    return reading;
}

// Several drivers give whatever weight there is for a stable one.
Reading StableOrNone(Reading reading) {
    if (!reading.IsWeight() || reading.stability == Stability::Stable) return reading;
    reading.meaning = Meaning::NotStable;
    if (reading.stability == Stability::Dynamic)
        reading.remark = "it shows " + reading.digits + " " + reading.unit;
    return reading;
}

const WireExchange* LastAnswered(const WireExchanges& wire) {
    const auto last = std::find_if(wire.exchanges.rbegin(), wire.exchanges.rend(),
                                   [](const WireExchange& one) { return !one.answer.empty(); });
    return last == wire.exchanges.rend() ? nullptr : &*last;
}

Measurement Interpret(const DriverInfo& driver, const Report& report) {
    const bool stableOnly = report.request.mode == kStableOnly;
    const WireExchanges wire(report.trace);
    const WireExchange* last = LastAnswered(wire);
    if (last == nullptr) return SignOfLife(driver, report);
    const Reading reading = report.outcome.result != 0
                                ? Accepted(driver, wire, *last, report.outcome.weight)
                                : Rejected(driver, wire, *last);
    return {stableOnly ? StableOrNone(reading) : reading, last->answer, last->answered};
}

}  // namespace

Measurement SignOfLife(const DriverInfo& driver, const Report& report) {
    const WireExchanges wire(report.question);
    const WireExchange* last = LastAnswered(wire);
    if (last == nullptr) return {NoWeight(Meaning::Silence), "", report.finished};
    const Meaning meaning = driver.interpret(last->answer).meaning;
    if (meaning == Meaning::Overload || meaning == Meaning::Underload)
        return {NoWeight(meaning), last->answer, last->answered};
    if (!LooksLikeText(last->answer))
        return {NoWeight(Meaning::NotUnderstood), last->answer, last->answered};
    return {NoWeight(Meaning::NotStable,
                     "the balance answers other commands, so the pan moves or it is busy"),
            last->answer, last->answered};
}

Measurement Measure(const DriverInfo& driver, const Report& report) {
    Measurement measurement = Interpret(driver, report);
    measurement.reading.askedAtOnce = report.request.mode == kAtOnce;
    return measurement;
}

ExitCode CodeFor(Meaning meaning) {
    return CodeFor(TroubleOf(meaning));
}

}  // namespace tool
