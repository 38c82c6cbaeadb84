#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

Exchange Reset(const char* answer) {
    return {"@\r\n", {{answer, 20}}};
}
Exchange Immediate(const char* answer) {
    return {"SI\r\n", {{answer, 20}}};
}
Exchange Stable(const char* answer) {
    return {"S\r\n", {{answer, 20}}};
}
Exchange Tare(const char* answer) {
    return {"T\r\n", {{answer, 20}}};
}
const Exchange kReady = Immediate("SD      1.00 g\r\n");
const Exchange kTen = Immediate("SD     10.00 g\r\n");
const Exchange kZero = Stable("S       0.00 g\r\n");

const Act kDetectStandard = {{"IsReady"}, {Reset("ES\r\n"), kReady, Reset("ES\r\n"), kReady}};
const Act kDetectSics = {{"IsReady"}, {Reset("I4 A \"1234567\"\r\n"), kReady, Reset("I4 A \"1234567\"\r\n"), kReady}};

constexpr long kReadyBound = 6700;
constexpr long kWeightBound = kReadyBound + 7200;
constexpr long kAverageBound = kReadyBound + 6200 + 1000 + 5 * 6700;

const std::vector<FaultDialogue> kDialogues = {
    {"Detection of the standard protocol", kDetectStandard, 1, kUntouchedWeight, kUntouchedDecimals, 4 * kReadyBound},
    {"Detection of MT-SICS", kDetectSics, 1, kUntouchedWeight, kUntouchedDecimals, 4 * kReadyBound},
    {"Readiness once detected", {{"IsReady"}, {kReady}}, 1, kUntouchedWeight, kUntouchedDecimals, kReadyBound, {kDetectSics}},
    {"Tare", {{"Tare"}, {kReady, Tare("\r\n"), kReady, kZero}}, 1, kUntouchedWeight, kUntouchedDecimals,
     kReadyBound + 8700 + kWeightBound, {kDetectStandard}},
    {"Tare without an answer", {{"Tare"}, {kReady, kReady, Stable("S       0.10 g\r\n")}}, 0, kUntouchedWeight,
     kUntouchedDecimals, kReadyBound + 8700 + kWeightBound, {kDetectStandard}},
    {"Stable weight at the first call",
     {{"Weight", 0}, {Reset("ES\r\n"), kReady, Reset("ES\r\n"), kReady, Stable("S     -12.34 g\r\n")}}, 1, -12.34, 2,
     5 * kReadyBound + 7200},
    {"Stable weight", {{"Weight", 0}, {kReady, Stable("S      12.3 g\r\n")}}, 1, 12.3, 1, kWeightBound, {kDetectStandard}},
    {"Immediate weight, dynamic", {{"Weight", 2}, {kReady, kTen}}, 2, 10.0, 2, kWeightBound, {kDetectStandard}},
    {"Immediate weight of MT-SICS counts as stable", {{"Weight", 2}, {kReady, Immediate("S D      10.00 g\r\n")}},
     1, 10.0, 2, kWeightBound, {kDetectSics}},
    {"Immediate weight, overload", {{"Weight", 2}, {kReady, Immediate("SI+\r\n")}}, 0, 0.0, kUntouchedDecimals,
     kWeightBound, {kDetectStandard}},
    {"Stable weight in mode 1", {{"Weight", 1}, {kReady, Stable("S     120.55 g\r\n")}}, 1, 120.55, 2, kAverageBound,
     {kDetectStandard}},
    {"Average of five", {{"Weight", 1}, {kReady, Stable("SI\r\n"), kTen, kTen, kTen, kTen, kTen}}, 2, 10.0, 2,
     kAverageBound, {kDetectStandard}},
    {"Average of three and two silent passes", {{"Weight", 1}, {kReady, kTen, kTen, kTen}}, 2, 6.0, 2, kAverageBound,
     {kDetectStandard}},
    {"Stable in the second pass", {{"Weight", 1}, {kReady, kTen, Immediate("S       7.5 g\r\n")}}, 1, 7.5, 1,
     kAverageBound, {kDetectStandard}},
    {"Refused in the second pass", {{"Weight", 1}, {kReady, kTen, Immediate("ES\r\n")}}, 0, 0.0, 2, kAverageBound,
     {kDetectStandard}},
    {"Unknown mode", {{"Weight", 3}, {kReady}}, 0, 0.0, kUntouchedDecimals, kReadyBound, {kDetectStandard}},
    {"Preset tare, standard",
     {{"TareSet", 0, 5.0}, {kReady, Tare("\r\n"), kReady, kZero, kReady, kReady, Stable("S       5.08 g\r\n")}}, 1,
     kUntouchedWeight, kUntouchedDecimals, 2 * kReadyBound + 8700 + 2 * kWeightBound + 2000, {kDetectStandard}},
    {"Preset tare, MT-SICS",
     {{"TareSet", 0, 5.0}, {kReady, Tare("T S       2.50 g\r\n"), {"TA 7.50 g\r\n", {{"TA A       7.50 g\r\n", 20}}}}}, 1,
     kUntouchedWeight, kUntouchedDecimals, kReadyBound + 2 * 6200, {kDetectSics}},
    {"Preset tare, MT-SICS, refused twice",
     {{"TareSet", 0, 5.0}, {kReady, Tare("T I\r\n"), {"TA 5.00 g\r\n", {{"TA L\r\n", 20}}}}}, 1,
     kUntouchedWeight, kUntouchedDecimals, kReadyBound + 2 * 6200, {kDetectSics}},
};

// clang-format on

TEST(WbalanceMettlerPMFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({TableOf<WbalanceMettlerPM>(), kDialogues, Make<WbalanceMettlerPM>()});
}

}  // namespace
}  // namespace faults
