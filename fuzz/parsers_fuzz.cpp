// Every parser on any text, in a block of memory of just its size.

#include <wbalance/wbalance.h>

#include <cstring>
#include <memory>

#include "Answers.h"
#include "Harness.h"
#include "Line.h"
#include "Steps.h"

namespace {

constexpr double kNoWeight = -777.25;
constexpr int kNoDecimals = -777;

/// A copy that ends where its memory does.
std::unique_ptr<char[]> Copy(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

bool Same(double one, double other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

/// The parser that all drivers have which have none of their own.
template <class Driver>
void Examine(double (Cwbalance::*)(char*, int*), const std::string& text) {
    Driver balance;
    double number = 0.0;
    int decimals = kNoDecimals;
    const auto end =
        fuzz::LineOfProcessEnd([&] { number = balance.ParseWeight(Copy(text).get(), &decimals); });
    fuzz::Require(end.has_value() == (text.size() >= 100), "100 characters are too many");
    if (end) return;
    int wanted = kNoDecimals;
    fuzz::Require(Same(number, faults::MettlerNumber(text, &wanted)), "the number");
    fuzz::Require(decimals == wanted, "the decimals");
}

/// A driver's own of the same form, which never writes the decimals.
template <class Driver>
void Examine(double (Driver::*)(char*, int*), const std::string& text) {
    Driver balance;
    int decimals = kNoDecimals;
    const auto end =
        fuzz::LineOfProcessEnd([&] { balance.ParseWeight(Copy(text).get(), &decimals); });
    fuzz::Require(end.has_value() == (text.size() >= 100), "100 characters are too many");
    fuzz::Require(decimals == kNoDecimals, "decimals are never written");
}

/// A parser with a status: alike on every call, and pointers that may be null change nothing.
template <class Driver>
void Examine(int (Driver::*)(char*, double*, int*), const std::string& text) {
    Driver balance;
    const auto parse = [&](double* weight, int* decimals) {
        int status = 0;
        const auto end = fuzz::LineOfProcessEnd(
            [&] { status = balance.ParseWeight(Copy(text).get(), weight, decimals); });
        return end ? -1 : status;
    };
    double weight = kNoWeight;
    int decimals = kNoDecimals;
    const int status = parse(&weight, &decimals);
    fuzz::Require(-1 <= status && status <= 2, "0, 1 or 2");
    fuzz::Require(status != -1 || text.size() >= 100, "a short text does not end the process");
    fuzz::Require(-777 <= decimals && decimals < 100, "decimals");
    double again = kNoWeight;
    fuzz::Require(parse(&again, nullptr) == status, "without decimals");
    fuzz::Require(Same(again, weight), "the same weight");
    static const answers::NullWeight nullWeight = answers::InstrumentOf<Driver>().nullWeight;
    if (nullWeight == answers::NullWeight::NotAllowed) return;
    const bool noResult = nullWeight == answers::NullWeight::NoResult;
    int untouched = kNoDecimals;
    fuzz::Require(parse(nullptr, &untouched) == (noResult ? 0 : status), "without a weight");
    fuzz::Require(untouched == (noResult ? kNoDecimals : decimals), "decimals without a weight");
}

/// A parser that also says whether the reading was steady.
template <class Driver>
void Examine(int (Driver::*)(char*, double*, int*, bool*), const std::string& text) {
    Driver balance;
    double weight = kNoWeight;
    int decimals = kNoDecimals;
    bool unstable = true;
    const int result = balance.ParseWeight(Copy(text).get(), &weight, &decimals, &unstable);
    fuzz::Require(result == 0 || result == 1, "0 or 1");
    if (text.empty()) {
        fuzz::Require(Same(weight, kNoWeight) && decimals == kNoDecimals && unstable,
                      "nothing written");
        return;
    }
    fuzz::Require(decimals == 2 || (result == 1 && decimals == 7), "2 or 7 decimals");
    fuzz::Require(unstable == (text.find('?') != std::string::npos),
                  "the mark of an unsteady reading");
    double again = kNoWeight;
    fuzz::Require(balance.ParseWeight(Copy(text).get(), &again, nullptr, nullptr) == result,
                  "null pointers");
    fuzz::Require(Same(weight, again), "the same weight");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = std::string(reinterpret_cast<const char*>(data), size).c_str();
    if (text.size() > 260) return 0;
    scripted::Line::Here().Reset();
    const scripted::TraceCapture capture;
#define WBALANCE_EXAMINE(name, Class) Examine<Class>(&Class::ParseWeight, text);
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_EXAMINE)
#undef WBALANCE_EXAMINE
    return 0;
}
