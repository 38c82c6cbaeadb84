#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

Exchange Ticket(const char* text) {
    return {"P\r\n", {{text, 80}}};
}
const Exchange kNet = Ticket("   123.4 g N\r\n");
const Exchange kZero = Ticket("     0.09 g N\r\n");
const Act kReady = {{"IsReady"}, {kNet}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

const std::vector<FaultDialogue> kDialogues = {
    {"Readiness", kReady, 1, kNoWeight, kNoDecimals, 3500},
    {"Weight without a readiness before", {{"Weight", 0}, {kNet}}, 0, 0.0, kNoDecimals, 3500},
    {"Net weight", {{"Weight", 0}, {kNet}}, 1, 123.4, 3, 3500, {kReady}},
    {"Ticket with a project", {{"Weight", 1}, {Ticket("01/02\r\nPROJ 7\r\n 15.5 g G\r\n 2.0 g T\r\n")}}, 1, 15.5, 3, 3500, {kReady}},
    {"Tare line that begins with a number", {{"Weight", 1}, {Ticket("12 x\r\n 2.0 g T\r\n")}}, 0, 0.0, 3, 3500, {kReady}},
    {"Two blanks before the unit", {{"Weight", 2}, {Ticket(" 12.5  g N\r\n")}}, 1, 0.0, 3, 3500, {kReady}},
    {"Number at the start", {{"Weight", 2}, {Ticket("12.5 g N\r\n")}}, 1, 12.5, 3, 3500, {kReady}},
    {"One digit at the start", {{"Weight", 2}, {Ticket("5 g N\r\n")}}, 1, 5.0, 3, 3500, {kReady}},
    {"No weight line", {{"Weight", 2}, {Ticket("ERR\r\n")}}, 0, 0.0, 3, 3500, {kReady}},
    {"Tare", {{"Tare"}, {kNet, kZero}}, 1, kNoWeight, kNoDecimals, 11000},
    {"Tare that leaves too much", {{"Tare"}, {kNet, Ticket("   -0.1 g N\r\n")}}, 0, kNoWeight, kNoDecimals, 11000, {kReady}},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, kNoWeight, kNoDecimals, 0},
};

// clang-format on

TEST(WbalanceScaleHouseALDFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet(
        {TableOf<WbalanceScaleHouseALD>(), kDialogues, Make<WbalanceScaleHouseALD>()});
}

}  // namespace
}  // namespace faults
