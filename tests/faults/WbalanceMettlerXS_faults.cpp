#include <gtest/gtest.h>

#include "MettlerPR2003_dialogues.h"
#include "Tables.h"

namespace faults {
namespace {

TEST(WbalanceMettlerXSFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceMettlerXS>(), MettlerPR2003Dialogues(), Make<WbalanceMettlerXS>()});
}

}  // namespace
}  // namespace faults
