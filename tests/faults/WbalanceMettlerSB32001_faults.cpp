#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

const Exchange kReset = {"@\r\n", {{"I4 A \"1126493049\"\r\n", 20}}};
const Exchange kTen = {"SI\r\n", {{"S D      10.00 g\r\n", 20}}};
const Exchange kSeven = {"SI\r\n", {{"S S      -7.5 g\r\n", 20}}};
const Exchange kDisplay = {"D \"READY\"\r\n", {{"D A\r\n", 20}}};
const Exchange kBack = {"DW\r\n", {{"DW A\r\n", 20}}};
const Exchange kTare = {"T\r\n", {{"T S       2.25 g\r\n", 20}}};
const Exchange kStable = {"S\r\n", {{"S S     100.00 g\r\n", 20}}};
const Exchange kBusy = {"S\r\n", {{"S I\r\n", 20}}};
const Act kReady = {{"IsReady"}, {kReset, kTen}};
const Act kShow = {{"DisplayMessage", 0, 0, "READY"}, {kReset, kTen, kDisplay}};

constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;
constexpr long kReceiveBound = 6100;
constexpr long kAverage = kReceiveBound + 1000 + 5 * (kReceiveBound + 500);

const std::vector<FaultDialogue> kDialogues = {
    {"Reset at the first readiness", kReady, 1, kNoWeight, kNoDecimals, 1000 + 2 * kReceiveBound},
    {"Reset with another answer", {{"IsReady"}, {{"@\r\n", {{"ES\r\n", 20}}}}}, 0, kNoWeight, kNoDecimals, 500 + kReceiveBound},
    {"Readiness without a reset", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0, {kReady}},
    {"Tare", {{"Tare"}, {kTare}}, 1, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
    {"Tare refused", {{"Tare"}, {{"T\r\n", {{"T I\r\n", 20}}}}}, 0, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
    {"Tare behind a text", {{"Tare"}, {kBack, kTare}}, 1, kNoWeight, kNoDecimals, 500 + 2 * kReceiveBound, {kShow}},
    {"Preset tare", {{"TareSet", 0, 10.0}, {kTare, {"TA 12.25 g\r\n", {{"TA A      12.25 g\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 2 * kReceiveBound, {kReady}},
    {"Preset tare behind a text, refused",
     {{"TareSet", 0, 10.0}, {kBack, {"T\r\n", {{"T I\r\n", 20}}}, {"TA 10.00 g\r\n", {{"TA L\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 500 + 3 * kReceiveBound, {kShow}},
    {"Stable weight", {{"Weight", 0}, {kStable}}, 1, 100.0, 2, 1000 + kReceiveBound, {kReady}},
    {"Stable weight behind a text", {{"Weight", 0}, {kBack, kStable}}, 1, 100.0, 2, 1500 + 2 * kReceiveBound, {kShow}},
    {"Stable weight while the pan moves", {{"Weight", 0}, {kBusy}}, 0, 0.0, kNoDecimals, 1000 + kReceiveBound, {kReady}},
    {"Immediate weight, dynamic", {{"Weight", 2}, {kTen}}, 2, 10.0, 2, kReceiveBound, {kReady}},
    {"Immediate weight, stable", {{"Weight", 2}, {kSeven}}, 1, -7.5, 1, kReceiveBound, {kReady}},
    {"Stable weight in mode 1", {{"Weight", 1}, {kStable}}, 1, 100.0, 2, kAverage, {kReady}},
    {"Average of five", {{"Weight", 1}, {kBusy, kTen, kTen, kTen, kTen, kTen}}, 2, 10.0, 2, kAverage, {kReady}},
    {"Average of two and three silent passes", {{"Weight", 1}, {kTen, kTen}}, 2, 4.0, 2, kAverage, {kReady}},
    {"Stable in the second pass", {{"Weight", 1}, {kTen, kSeven}}, 1, -7.5, 1, kAverage, {kReady}},
    {"Refused in the second pass", {{"Weight", 1}, {kTen, {"SI\r\n", {{"ES\r\n", 20}}}}}, 0, 0.0, 2, kAverage, {kReady}},
    {"Unknown mode behind a text", {{"Weight", 7}, {kBack}}, 0, 0.0, kNoDecimals, 500 + kReceiveBound, {kShow}},
    {"Text too long, with the reset", {{"DisplayMessage", 0, 0, std::string(58, 'x')}, {kReset, kTen}}, 0, kNoWeight, kNoDecimals,
     1000 + 2 * kReceiveBound},
    {"Text", {{"DisplayMessage", 0, 0, "READY"}, {kDisplay}}, 1, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
};

// clang-format on

TEST(WbalanceMettlerSB32001Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceMettlerSB32001>(), kDialogues, Make<WbalanceMettlerSB32001>()});
}

}  // namespace
}  // namespace faults
