#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

Exchange Answer(const char* command, const char* text) {
    return {command, {{text, 60}}};
}
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;
constexpr long kGather = 3 * 3100;
constexpr long kWeightBound = 20000 + kGather + 200;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness of the line", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Tare", {{"Tare"}, {Answer("T\r", "      0.00 g   TS\r\n")}}, 1, kNoWeight, kNoDecimals, kGather},
    {"Tare with an error", {{"Tare"}, {Answer("T\r", "      0.00 g   TE\r\n")}}, 0, kNoWeight, kNoDecimals, kGather},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {Answer("B\r", "    123.45 g   DS\r\n")}}, 1, 123.45, 2, kWeightBound},
    {"Weight that moves", {{"Weight", 1}, {Answer("B\r", "   -12.345 g   DI\r\n")}}, 1, -12.345, 2, kWeightBound},
    {"Two records", {{"Weight", 2}, {Answer("B\r", "    123.45 g   DS\r\n    123.46 g   DI\r\n")}}, 1, 123.45, 2, kWeightBound},
    {"Four records in pieces", {{"Weight", 0}, {{"B\r", {{"    123.45 g   DS\r\n    123.46 g   DI\r\n    123", 60},
        {".47 g   DS\r\n    123.48 g", 2500}, {"   DS\r\n", 5000}}}}}, 1, 123.45, 2, kWeightBound + 2 * kGather},
    {"63 characters and the rest of a record", {{"Weight", 0}, {{"B\r",
        {{"    123.45 g   DS\r\n    123.46 g   DI\r\n    123.47 g   DS\r\n    12", 60}, {"3.48 g   DS\r\n", 2500}}}}},
     1, 123.45, 2, kWeightBound + 2 * kGather},
    {"Record of a later round", {{"Weight", 0}, {{"B\r", {{"      7.25 g   DS\r\n", 9500}}}}}, 1, 7.25, 2, kWeightBound},
    {"Overload", {{"Weight", 0}, {Answer("B\r", "    999.99 g   OS\r\n")}}, 0, 999.99, 2, kWeightBound},
    {"Silence", {{"Weight", 0}, {}}, 0, kNoWeight, kNoDecimals, kWeightBound},
};

/// Without WithLineReadiness, IsReady and Weight call each other and no byte reaches the
/// instrument. Only a failing call on the port ends this.
const std::vector<FaultDialogue> kEndlessDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Tare", {{"Tare"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Weight", {{"Weight", 0}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
};

// clang-format on

TEST(WbalanceGibertiniFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({WithReadinessOfTheLine(TableOf<WbalanceGibertini>()), kDialogues,
                         Make<WithLineReadiness<WbalanceGibertini>>()});
}

TEST(WbalanceGibertiniFaults, Every_failing_call_ends_the_reentry_as_it_should) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceGibertini>(), kEndlessDialogues, Make<WbalanceGibertini>()});
}

}  // namespace
}  // namespace faults
