#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Kern EW, EG-N, EWB records.
Reading ReadKern(const std::string& answer);

}  // namespace tool
