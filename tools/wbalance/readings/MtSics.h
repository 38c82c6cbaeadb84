#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// MT-SICS: Mettler Toledo generic, PR2003, XS, SB32001.
Reading ReadMtSics(const std::string& answer);

}  // namespace tool
