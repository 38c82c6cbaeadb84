#pragma once

#include "process/BalanceProcess.h"

namespace tool {

/// Whether the instrument sends text all the time although nothing is asked: for longer than one
/// print-out takes, so that a person may press PRINT meanwhile. Takes a second where nothing comes.
/// A port that fails is no matter of this: then nothing is heard.
///
/// @param line drives RawLine(), with a time-out of a second
bool SendsUnasked(BalanceProcess& line);

}  // namespace tool
