#pragma once

#include "Matrix.h"

namespace faults {

/// Of the XL-1800 and the EL-2000S, which read alike and differ in their weight command.
std::vector<FaultDialogue> SignedReadingDialogues(const char* command);

}  // namespace faults
