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
const Exchange kRecord = Answer("O9\r\n", "A00\r\n-  12.50 G S\r\n");
const Exchange kAcknowledged = Answer("O9\r\n", "A00\r\n");
const Exchange kImmediate = Answer("O8\r\n", "A00\r\n+   5.00 G U\r\n");
const Exchange kStopped = Answer("O0\r\n", "A00\r\n");
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

// The rounds of an answer: the first one, one for a late rest, one in which nothing comes.
constexpr long kGather = 3 * 3100;
constexpr long kStableBound = kGather + 5000 + kGather + 200;
constexpr long kAverageBound = kStableBound + kGather + 5 * kGather;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness of the line", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Tare", {{"Tare"}, {Answer("T \r\n", "A00\r\n")}}, 1, kNoWeight, kNoDecimals, kGather},
    {"Tare refused", {{"Tare"}, {Answer("T \r\n", "E01\r\n")}}, 0, kNoWeight, kNoDecimals, kGather},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {kRecord}}, 1, -12.5, 7, kStableBound},
    {"Weight without a point", {{"Weight", 1}, {Answer("O9\r\n", "A00\r\n+    120 G S\r\n")}}, 1, 120.0, kNoDecimals, kAverageBound},
    {"Record ahead of the acknowledgement", {{"Weight", 0}, {Answer("O9\r\n", "+  12.50 G S\r\nA00\r\n")}}, 1, 12.5, 7, kStableBound},
    {"Record of the second round", {{"Weight", 0}, {{"O9\r\n", {{"A00\r\n", 60}, {"+   7.25 G S\r\n", 4000}}}}}, 1, 7.25, 7,
     kStableBound},
    {"63 characters without a line feed", {{"Weight", 2}, {Answer("O8\r\n",
        "A00\r\n+   5.00 G U and 46 characters more on the same line .....")}}, 1, 5.0, 7, 2 * kGather},
    {"Acknowledgement behind 63 characters", {{"Weight", 2}, {{"O8\r\n", {{"+   5.00 G U\r\n+   6.00 G U\r\n+   7", 60},
        {".00 G U\r\n+   8.00 G U and the", 2500}, {" acknowledgement: A00\r\n", 5000}}}}}, 1, 5.0, 7, 3 * kGather},
    {"No record in five seconds", {{"Weight", 0}, {kAcknowledged}}, 0, kNoWeight, kNoDecimals, kStableBound},
    {"Immediate weight", {{"Weight", 2}, {kImmediate}}, 1, 5.0, 7, kGather},
    {"Immediate weight, acknowledged only", {{"Weight", 2}, {Answer("O8\r\n", "A00\r\n")}}, 0, kNoWeight, kNoDecimals, kGather},
    {"Average", {{"Weight", 1}, {kAcknowledged, kStopped, kImmediate, kImmediate, kImmediate, kImmediate, kImmediate}}, 1, 5.0,
     kNoDecimals, kAverageBound},
    {"Refused command", {{"Weight", 1}, {Answer("O9\r\n", "E01\r\n")}}, 0, kNoWeight, kNoDecimals, kAverageBound},
};

/// Without WithLineReadiness, IsReady and Weight call each other and no byte reaches the
/// instrument. Only a failing call on the port ends this.
const std::vector<FaultDialogue> kEndlessDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Tare", {{"Tare"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Weight", {{"Weight", 0}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Immediate weight", {{"Weight", 2}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
};

// clang-format on

TEST(WbalanceKern_EW_EGN_EWBFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({WithReadinessOfTheLine(TableOf<WbalanceKern_EW_EGN_EWB>()), kDialogues,
                         Make<WithLineReadiness<WbalanceKern_EW_EGN_EWB>>()});
}

TEST(WbalanceKern_EW_EGN_EWBFaults, Every_failing_call_ends_the_reentry_as_it_should) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceKern_EW_EGN_EWB>(), kEndlessDialogues, Make<WbalanceKern_EW_EGN_EWB>()});
}

}  // namespace
}  // namespace faults
