#pragma once

#include <optional>
#include <string>
#include <vector>

#include "readings/Reading.h"

namespace tool {

/// A question that changes nothing on any instrument, and who answers it how.
///
/// Only requests for a reading are used. "B\r", Gibertini's request, would preset a tare on a
/// Mettler PM; it is asked where nothing else has been answered, for a PM answers the first
/// question. The carriage return ahead of it ends what the questions without a line end have left.
struct Probe {
    std::string command;
    /// The driver whose instrument answers so; empty when the answer is none of those.
    std::string (*driverFor)(const std::string& answer);
    std::vector<std::string> drivers;  ///< that it can find
};

/// The questions in the order in which they are asked.
const std::vector<Probe>& Probes();

/// The model behind an MT-SICS balance's answer to "I2\r\n", as a driver's name:
/// I2 A "PR2003 2100.000 g".
std::string DriverForModel(const std::string& answer);

}  // namespace tool
