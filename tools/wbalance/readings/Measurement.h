#pragma once

#include "ExitCode.h"
#include "Reading.h"
#include "drivers/DriverTable.h"
#include "process/BalanceProcess.h"

namespace tool {

/// A reading with what it was made from: what the library returned, held against what the
/// instrument answered.
struct Measurement {
    Reading reading;
    std::string answer;  ///< the raw answer that decided
    WallTime time;       ///< when it had come
};

/// Weighs what a Weigh operation has brought. A weight comes out only when the driver accepted the
/// answer, the answer means a weight in grams, and both show the same number; where only a stable
/// weight was asked for, when the answer says that it is stable.
Measurement Measure(const DriverInfo& driver, const Report& report);

/// What the answer to the driver's question says of an instrument that has said nothing before: it
/// waits for its pan to come to rest. Silence where that was not answered, either.
Measurement SignOfLife(const DriverInfo& driver, const Report& report);

/// The exit code for a reading.
ExitCode CodeFor(Meaning meaning);

}  // namespace tool
