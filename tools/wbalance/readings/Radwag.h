#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Radwag frames.
Reading ReadRadwag(const std::string& answer);

}  // namespace tool
