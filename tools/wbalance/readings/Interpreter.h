#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Reads an instrument's whole answer to a weight command for what the instrument meant by it. Pure
/// functions, each in the source file of this folder that is named after what it reads.
using Interpreter = Reading (*)(const std::string& answer);

/// A reading that is none, for a reason that a few words tell.
Reading NoWeight(Meaning meaning, const std::string& remark = "");

/// A weight, or OtherUnit when `unit` is not one of the ways in which this instrument writes grams.
Reading WeightIn(const std::string& unit, const std::string& grams, const std::string& digits,
                 Stability stability);

/// A weight whose number the answer ends with, without a unit or a line end, may lack digits.
Reading TruncatedIfCut(const Reading& reading, const std::string& answer);

}  // namespace tool
