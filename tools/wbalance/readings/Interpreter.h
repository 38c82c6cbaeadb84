#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Finds out what an instrument's whole answer to a weight command means. Interpreters are pure
/// functions. Each is in the source file of this folder that is named after its dialect.
using Interpreter = Reading (*)(const std::string& answer);

/// A reading without a weight; the remark gives the reason in a few words.
Reading NoWeight(Meaning meaning, const std::string& remark = "");

/// A weight, or OtherUnit when `unit` is not one of the ways in which this instrument writes grams.
Reading WeightIn(const std::string& unit, const std::string& grams, const std::string& digits,
                 Stability stability);

/// If an answer ends with the number, without a unit or a line end, digits may be missing.
Reading TruncatedIfCut(const Reading& reading, const std::string& answer);

}  // namespace tool
