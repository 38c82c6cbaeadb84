#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Gibertini records of the CRYSTAL protocol.
Reading ReadGibertini(const std::string& answer);

}  // namespace tool
