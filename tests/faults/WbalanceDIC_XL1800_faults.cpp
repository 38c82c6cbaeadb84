#include <gtest/gtest.h>

#include "SignedReading_dialogues.h"
#include "Tables.h"

namespace faults {
namespace {

TEST(WbalanceDIC_XL1800Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceDIC_XL1800>(), SignedReadingDialogues("?1"), Make<WbalanceDIC_XL1800>()});
}

}  // namespace
}  // namespace faults
