#pragma once

#include "ExitCode.h"
#include "Reading.h"
#include "drivers/DriverTable.h"
#include "process/BalanceProcess.h"

namespace tool {

/// A reading with its sources. It compares what the library returned with what the instrument
/// answered.
struct Measurement {
    Reading reading;
    std::string answer;  ///< the raw answer that decided
    WallTime time;       ///< when it had come
};

/// Makes a measurement of the outcome of a Weigh operation. It is a weight only if the driver
/// accepted the answer, the answer means a weight in grams, and both have the same number. If only
/// a stable weight was asked for, the answer must also say that it is stable.
Measurement Measure(const DriverInfo& driver, const Report& report);

/// What the answer to the driver's question says of an instrument that has said nothing before: it
/// waits for its pan to come to rest. Silence where that was not answered, either.
Measurement SignOfLife(const DriverInfo& driver, const Report& report);

/// The exit code for a reading.
ExitCode CodeFor(Meaning meaning);

}  // namespace tool
