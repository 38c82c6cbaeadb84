#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

const Exchange kStable = {"S\r\n", {{"S S     100.00 g\r\n", 30}}};
const Exchange kBusy = {"S\r\n", {{"S I\r\n", 30}}};
const Exchange kNoStable = {"S\r\n", {}};

Exchange Dynamic(const char* line) {
    return {"SI\r\n", {{line, 30}}};
}
const Exchange kTen = Dynamic("S D      10.00 g\r\n");

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 1, kUntouchedWeight, kUntouchedDecimals, 0},
    {"Zero", {{"Tare"}, {{"Z\r\n", {{"Z A\r\n", 30}}}}}, 1, kUntouchedWeight, kUntouchedDecimals, 3000},
    {"Zero behind the reset's answer",
     {{"Tare"}, {{"@\r\n", {{"I4 A \"1126493049\"\r\n", 10}}}, {"Z\r\n", {{"Z A\r\n", 30}}}}},
     1, kUntouchedWeight, kUntouchedDecimals, 3000},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 1, kUntouchedWeight, kUntouchedDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {kStable}}, 1, 100.0, 2, 4000},
    {"Weight behind the reset's answer",
     {{"Weight", 1}, {{"@\r\n", {{"I4 A \"1126493049\"\r\n", 10}}}, kStable}}, 1, 4.0, kUntouchedDecimals, 22500},
    {"Immediate weight, dynamic", {{"Weight", 2}, {kTen}}, 2, 10.0, 2, 3000},
    {"Immediate weight, stable", {{"Weight", 2}, {Dynamic("S S     -12.345 g\r\n")}}, 1, -12.345, 3, 3000},
    {"Stable weight in mode 1", {{"Weight", 1}, {kStable}}, 1, 100.0, 2, 22500},
    {"Average of five", {{"Weight", 1}, {kBusy, kTen, kTen, kTen, kTen, kTen}}, 2, 10.0, 2, 22500},
    {"Average of three and two silent passes", {{"Weight", 1}, {kNoStable, kTen, kTen, kTen}}, 2, 6.0, 2, 22500},
    {"Stable in the third pass",
     {{"Weight", 1}, {kNoStable, kTen, kTen, Dynamic("S S       7.5 g\r\n")}}, 1, 7.5, 1, 22500},
    {"Refused in the second pass", {{"Weight", 1}, {kBusy, kTen, Dynamic("ES\r\n")}}, 0, 0.0, 2, 22500},
    {"Unknown mode", {{"Weight", 3}, {}}, 0, 0.0, kUntouchedDecimals, 0},
    {"Stable weight on a held port", {{"Weight", 0}, {kStable}}, 1, 100.0, 2, 4000, {{{"IsReady"}, {}}}},
};

// clang-format on

TEST(WbalanceMettlerToledoFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceMettlerToledo>(), kDialogues, Make<WbalanceMettlerToledo>()});
}

}  // namespace
}  // namespace faults
