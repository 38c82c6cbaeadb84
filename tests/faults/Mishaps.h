#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Matrix.h"

namespace faults {

/// One thing that goes wrong, once.
struct Mishap {
    std::string name;
    std::function<void(Script&, scripted::Line&)> strike;
};

/// Every way in which the call with this number on the port can fail.
void AddCallMishaps(int number, const std::string& call, std::vector<Mishap>& mishaps);

/// All faults of each answer in the script.
void AddAnswerMishaps(const Script& script, std::vector<Mishap>& mishaps);

}  // namespace faults
