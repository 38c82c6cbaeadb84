#ifndef WBALANCE_TESTS_FAULTS_WBALANCEMETTLERPR2003_TABLE_H
#define WBALANCE_TESTS_FAULTS_WBALANCEMETTLERPR2003_TABLE_H

#include "Matrix.h"
#include "Steps.h"

namespace faults {

/// The PR2003 and, with line settings of its own, the XS.
Description MettlerPR2003(const Settings& settings);

std::vector<Dialogue> MettlerPR2003Dialogues();

}  // namespace faults

#endif
