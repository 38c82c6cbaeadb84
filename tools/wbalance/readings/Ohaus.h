#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Ohaus Scout Pro and Explorer print lines.
Reading ReadOhaus(const std::string& answer);

}  // namespace tool
