#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Sartorius SBI print lines.
Reading ReadSbi(const std::string& answer);

}  // namespace tool
