#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "ScriptedTest.h"

namespace scripted {

using Weighing = std::function<int(long mode, double* weight, int* decimals)>;

/// A weighing that always shows this.
inline Weighing Shows(double grams, int result = 1) {
    return [=](long /*mode*/, double* weight, int* /*decimals*/) {
        *weight = grams;
        return result;
    };
}

/// A host's own driver on `Driver`, for tests of what a driver asks of the class derived from it.
/// It notes each question, and gives the driver's own answer where the test does not say another.
template <class Driver>
class Host : public Open<Driver> {
 public:
    int IsReady() override {
        calls.push_back("IsReady");
        return readiness ? readiness() : Driver::IsReady();
    }

    int Weight(long mode, double* weight, int* decimals) override {
        calls.push_back("Weight " + std::to_string(mode) +
                        (decimals == nullptr ? " without decimals" : " with decimals"));
        return weighing ? weighing(mode, weight, decimals) : Driver::Weight(mode, weight, decimals);
    }

    long ReadinessChecks() const { return std::count(calls.begin(), calls.end(), "IsReady"); }

    std::function<int()> readiness;
    Weighing weighing;
    std::vector<std::string> calls;  ///< "IsReady", "Weight 0 without decimals"
};

}  // namespace scripted
