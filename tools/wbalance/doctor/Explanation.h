#pragma once

#include <string>
#include <vector>

#include "Trouble.h"
#include "process/WireExchange.h"
#include "readings/Measurement.h"

namespace tool {

/// What an answer that is no weight of this driver shows: another parity, another instrument, an
/// echo. Pure, for bytes as they were received; there is at least one.
Finding ExplainAnswer(const DriverInfo& driver, const LineSettings& line,
                      const std::string& command, const Measurement& measurement);

/// Whether reading has stopped while characters were still coming: a read that ends for any other
/// reason has either met the line end or waited in vain, which the trace says.
bool EndsInMidAnswer(const std::vector<TraceText>& trace, const std::string& answer);

}  // namespace tool
