#ifndef WBALANCE_TESTS_FAULTS_COLLECTING_TABLE_H
#define WBALANCE_TESTS_FAULTS_COLLECTING_TABLE_H

#include "Matrix.h"
#include "Steps.h"

namespace faults {

/// The reading that XL-1800 and EL-2000S have in common: an answer collected piece by piece, the
/// request repeated up to five times.
Description Collecting(const char* displayName, const char* command, const Steps& tareStart);

std::vector<Dialogue> CollectingDialogues(const char* command);

}  // namespace faults

#endif
