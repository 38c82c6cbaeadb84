#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Reads an instrument's whole answer to a weight command for what the instrument meant by it. Pure
/// functions, one in each source file of this folder that is named after the dialect.
using Dialect = Reading (*)(const std::string& answer);

/// MT-SICS: Mettler Toledo generic, PR2003, XS, SB32001.
Reading ReadMtSics(const std::string& answer);

}  // namespace tool
