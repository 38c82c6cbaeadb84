#include <gtest/gtest.h>

#include "SignedReading_dialogues.h"
#include "Tables.h"

namespace faults {
namespace {

TEST(WbalanceSetra_EL_2000SFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({TableOf<WbalanceSetra_EL_2000S>(), SignedReadingDialogues("#"),
                         Make<WbalanceSetra_EL_2000S>()});
}

}  // namespace
}  // namespace faults
