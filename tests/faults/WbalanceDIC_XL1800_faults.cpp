#include <gtest/gtest.h>

#include "Collecting_table.h"

namespace faults {
namespace {

TEST(WbalanceDIC_XL1800Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {Collecting("Denver Instrument Company XL-1800", "?1", {NeedSerialObject()}),
         CollectingDialogues("?1"), Make<WbalanceDIC_XL1800>()});
}

}  // namespace
}  // namespace faults
