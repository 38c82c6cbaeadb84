#pragma once

#include "drivers/DriverTable.h"

namespace tool {

/// A line on which no driver speaks: a Display request sends its text as it is and waits for what
/// comes back, until a line feed or for a time-out; an empty text only listens. The result is 1
/// when anything came.
const DriverInfo& RawLine();

}  // namespace tool
