#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

Exchange Stable(const char* line) {
    return {"SP\r\n", {{line, 40}}};
}
Exchange Immediate(const char* line) {
    return {"P\r\n", {{line, 40}}};
}
const Exchange kTrial = Immediate("       12.73 g    ?\r\n");
const Act kReady = {{"IsReady"}, {kTrial}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness", kReady, 1, kNoWeight, kNoDecimals, 3500},
    {"Weight without a readiness before", {{"Weight", 1}, {kTrial}}, 0, 0.0, kNoDecimals, 3500},
    {"Restore without a readiness before", {{"RestoreFactorySettings"}, {}}, 0, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {Stable("       12.34 g\r\n")}}, 1, 12.34, 7, 3500, {kReady}},
    {"Stable weight that is unsteady", {{"Weight", 0}, {Stable("          -5 g ?\r\n")}}, 0, -5.0, 2, 3500, {kReady}},
    {"Immediate weight, unsteady", {{"Weight", 1}, {Immediate("          -5 g ?\r\n")}}, 1, -5.0, 2, 3500, {kReady}},
    {"Immediate weight in another mode", {{"Weight", 7}, {Immediate("    192.21 g\r\n")}}, 1, 192.21, 7, 3500, {kReady}},
    {"An error text", {{"Weight", 1}, {Immediate("ES\r\n")}}, 0, 0.0, 2, 3500, {kReady}},
    {"Tare", {{"Tare"}, {kTrial, Stable("        0.09 g\r\n")}}, 1, kNoWeight, kNoDecimals, 9000},
    {"Tare that leaves too much", {{"Tare"}, {kTrial, Stable("       -0.1 g\r\n")}}, 0, kNoWeight, kNoDecimals, 9000, {kReady}},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, kNoWeight, kNoDecimals, 0},
    {"Restore", {{"RestoreFactorySettings"}, {}}, 1, kNoWeight, kNoDecimals, 0, {kReady}},
};

// clang-format on

TEST(WbalanceOHAUS_SPU602Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceOHAUS_SPU602>(), kDialogues, Make<WbalanceOHAUS_SPU602>()});
}

}  // namespace
}  // namespace faults
