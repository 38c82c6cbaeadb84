#include <gtest/gtest.h>

#include "WbalanceMettlerPR2003_table.h"

namespace faults {
namespace {

TEST(WbalanceMettlerPR2003Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({MettlerPR2003({0, 2400, 2, 7, 0, 0, 1, 'S'}), MettlerPR2003Dialogues(),
                         Make<WbalanceMettlerPR2003>()});
}

}  // namespace
}  // namespace faults
