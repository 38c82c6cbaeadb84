#pragma once

#include "Matrix.h"

namespace faults {

/// Of the PR2003 and the XS.
std::vector<FaultDialogue> MettlerPR2003Dialogues();

}  // namespace faults
