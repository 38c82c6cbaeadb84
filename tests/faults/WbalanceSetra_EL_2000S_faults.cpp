#include <gtest/gtest.h>

#include "Collecting_table.h"

namespace faults {
namespace {

TEST(WbalanceSetra_EL_2000SFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({Collecting("Setra EL-2000S", "#", {Ready()}), CollectingDialogues("#"),
                         Make<WbalanceSetra_EL_2000S>()});
}

}  // namespace
}  // namespace faults
