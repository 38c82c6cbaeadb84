#pragma once

#include <string>

#include "ExitCode.h"
#include "drivers/DriverTable.h"
#include "process/BalanceProcess.h"

namespace tool {

/// Whether an operation other than weighing was carried out by the instrument.
struct Confirmation {
    ExitCode code = ExitCode::Done;
    std::string sentence;  ///< what was done instead, or what went wrong; may be empty
};

/// Compares the driver's result with the instrument's answer.
Confirmation Confirm(const DriverInfo& driver, Operation operation, const Report& report);

}  // namespace tool
