#pragma once

#include "Matrix.h"

namespace faults {

/// Of the PR2003 and the XS.
std::vector<Dialogue> MettlerPR2003Dialogues();

}  // namespace faults
