#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Mettler PM: the standard PM protocol, or MT-SICS.
Reading ReadPm(const std::string& answer);

}  // namespace tool
