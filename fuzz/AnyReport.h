#pragma once

#include "Harness.h"
#include "readings/Measurement.h"

namespace fuzz {

/// Any driver.
const tool::DriverInfo& AnyDriver(Input& input);

/// A text; now and then a piece of it over and over, up to 100,000 characters.
std::string AnyText(Input& input);

/// What an operation of the driver may have brought: any traces, any result, and mostly the weight
/// that its dialect reads in the last answer.
tool::Report AnyReport(Input& input, const tool::DriverInfo& driver);

}  // namespace fuzz
