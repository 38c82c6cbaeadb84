#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

Exchange Print(const char* lines) {
    return {"\x1bP\r\n", {{lines, 40}}};
}
const Exchange kPrint = Print("+   123.56 g  \r\n");
const Act kReady = {{"IsReady"}, {kPrint}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness", kReady, 1, kNoWeight, kNoDecimals, 3500},
    {"Weight without a readiness before", {{"Weight", 1}, {kPrint}}, 0, 0.0, kNoDecimals, 3500},
    {"Tare without a readiness before", {{"Tare"}, {kPrint}}, 0, kNoWeight, kNoDecimals, 4500},
    {"Weight of 16 characters", {{"Weight", 1}, {Print("-    12.34 g  \r\n")}}, 1, -12.34, kNoDecimals, 3500, {kReady}},
    {"Weight of 22 characters", {{"Weight", 0}, {Print("N     +   123.56 g  \r\n")}}, 1, 123.56, kNoDecimals, 3500, {kReady}},
    {"Net behind the tare", {{"Weight", 2}, {Print("TP1   +     2.50 g  \r\nn1    -     7.25 g  \r\n")}}, 1, -7.25,
     kNoDecimals, 3500, {kReady}},
    {"Overload reads as zero", {{"Weight", 1}, {Print("      H       \r\n")}}, 1, 0.0, kNoDecimals, 3500, {kReady}},
    {"Tare", {{"Tare"}, {Print("+     0.10 g  \r\n")}}, 1, kNoWeight, kNoDecimals, 4500, {kReady}},
    {"Tare that leaves too much", {{"Tare"}, {Print("+     0.11 g  \r\n")}}, 0, kNoWeight, kNoDecimals, 4500, {kReady}},
    {"Preset tare", {{"TareSet", 0, 5.0}, {Print("-     4.99 g  \r\n")}}, 1, kNoWeight, kNoDecimals, 6500, {kReady}},
    {"Preset tare not taken", {{"TareSet", 0, 5.0}, {Print("-     4.98 g  \r\n")}}, 0, kNoWeight, kNoDecimals, 6500, {kReady}},
};

// clang-format on

TEST(WbalanceSartoriusFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({TableOf<WbalanceSartorius>(), kDialogues, Make<WbalanceSartorius>()});
}

}  // namespace
}  // namespace faults
