#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Denver Instrument XL-1800 and Setra EL-2000S: a number behind a stability mark.
Reading ReadSignedReading(const std::string& answer);

}  // namespace tool
