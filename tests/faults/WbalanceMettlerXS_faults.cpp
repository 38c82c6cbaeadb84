#include <gtest/gtest.h>

#include "WbalanceMettlerPR2003_table.h"

namespace faults {
namespace {

TEST(WbalanceMettlerXSFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({MettlerPR2003({0, 9600, 0, 8, 0, 0, 1, 'S'}), MettlerPR2003Dialogues(),
                         Make<WbalanceMettlerXS>()});
}

}  // namespace
}  // namespace faults
