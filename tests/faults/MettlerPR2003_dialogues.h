#ifndef WBALANCE_TESTS_FAULTS_METTLERPR2003_DIALOGUES_H
#define WBALANCE_TESTS_FAULTS_METTLERPR2003_DIALOGUES_H

#include "Matrix.h"

namespace faults {

/// Of the PR2003 and the XS.
std::vector<Dialogue> MettlerPR2003Dialogues();

}  // namespace faults

#endif
