#include <gtest/gtest.h>

#include "MettlerPR2003_dialogues.h"
#include "Tables.h"

namespace faults {
namespace {

TEST(WbalanceMettlerPR2003Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({TableOf<WbalanceMettlerPR2003>(), MettlerPR2003Dialogues(),
                         Make<WbalanceMettlerPR2003>()});
}

}  // namespace
}  // namespace faults
