#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

const Exchange kFrame = {"S\r\n", {{"S    -    12.345 g  \r\n", 40}}};
const Exchange kImmediate = {"SI\r\n", {{"SI ?      -0.012 g  \r\n", 40}}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

// Two readings of at most 3 s and pauses of 300 ms; a weight has up to three.
constexpr long kOneWayBound = 2 * 3300;
constexpr long kWeightBound = 3 * 3300;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Tare", {{"Tare"}, {{"T\r\n", {{"T A\r\n", 20}, {"T D\r\n", 400}}}}}, 1, kNoWeight, kNoDecimals, 3 * kOneWayBound},
    {"Tare done in the second reading", {{"_Tare"}, {{"T\r\n", {{"T A\r\n", 20}, {"T D\r\n", 3200}}}}}, 1, kNoWeight,
     kNoDecimals, kOneWayBound},
    {"Zero in place of the tare", {{"Tare"}, {{"T\r\n", {{"T v\r\n", 20}}}, {"Z\r\n", {{"Z A\r\nZ D\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 3 * kOneWayBound},
    {"Tare at the second attempt",
     {{"Tare"}, {{"T\r\n", {{"T E\r\n", 20}}}, {"Z\r\n", {{"Z ^\r\n", 20}}}, {"T\r\n", {{"T D\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 3 * kOneWayBound},
    {"Zero", {{"Zero"}, {{"Z\r\n", {{"Z A\r\n", 20}, {"Z D\r\n", 100}}}}}, 1, kNoWeight, kNoDecimals, kOneWayBound},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {kFrame}}, 1, -12.345, 3, kWeightBound},
    {"Stable weight with its acknowledgement ahead", {{"Weight", 0}, {{"S\r\n", {{"S A\r\n", 20}, {"S         100 g  \r\n", 900}}}}}, 1,
     100.0, kNoDecimals, kWeightBound},
    {"Stable weight long after its acknowledgement",
     {{"Weight", 0}, {{"S\r\n", {{"S A\r\n", 20}, {"S       1.5 g  \r\n", 4000}}}}}, 1, 1.5, 1, kWeightBound},
    {"Stable weight that times out", {{"Weight", 0}, {{"S\r\n", {{"S E\r\n", 20}}}}}, 0, 0.0, kNoDecimals, kWeightBound},
    {"Immediate weight", {{"Weight", 2}, {kImmediate}}, 1, -0.012, 3, kWeightBound},
    {"Immediate weight not accessible", {{"Weight", 2}, {{"SI\r\n", {{"SI I\r\n", 20}}}}}, 0, 0.0, kNoDecimals, kWeightBound},
    {"Stable weight in mode 1", {{"Weight", 1}, {kFrame}}, 1, -12.345, 3, 2 * kWeightBound},
    {"Immediate weight in mode 1", {{"Weight", 1}, {{"S\r\n", {{"S E\r\n", 20}}}, kImmediate}}, 1, -0.012, 3, 2 * kWeightBound},
    {"Unknown mode", {{"Weight", 5}, {}}, 0, 0.0, kNoDecimals, 0},
};

// clang-format on

TEST(WbalanceRadwagFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({TableOf<WbalanceRadwag>(), kDialogues, Make<WbalanceRadwag>()});
}

}  // namespace
}  // namespace faults
