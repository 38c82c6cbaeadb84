#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"

namespace faults {
namespace {

int ParseOhaus(const std::string& answer, double* weight, int* decimals) {
    if (decimals != nullptr) *decimals = 2;
    *weight = 0.0;
    if (answer.find('g') == std::string::npos) return 0;
    const std::size_t start = answer.find_first_not_of(" g");
    if (start == std::string::npos) return 0;
    const std::string piece = answer.substr(start, answer.find_first_of(" g", start) - start);
    if (decimals != nullptr && piece.find('.') != std::string::npos) *decimals = 7;
    *weight = std::strtod(piece.c_str(), nullptr);
    return 1;
}

// clang-format off

const Steps kFailed = {TraceAsIs("Weight procedure failed!"), Return(0)};

// Without a port that takes the command the answer is waited for all the same.
const Step kSendWeightCommand = Do([](Run& run) {
    run.repeated = run.balance.Send(run.call.mode == 0 ? "SP\r\n" : "P\r\n");
});

const Description kOhaus = {
    "Ohaus Scout Pro - Explorer",
    {0, 2400, 0, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            Ready(),
            Clear(GoOn()), Trace("%s - Tare\n"), Send("T\r\n"),
            Pause(2000),
            Clear(GoOn()),
            Read(0),
            If(ReadingBelow(0.1), {Return(1)}, Fail())}},
        {"TareSet", {Return(0)}},
        {"RestoreFactorySettings", {
            NeedSerialObject({TraceAsIs("Restore factory settings command failed!"), Return(0)}),
            Trace("%s - Restore factory settings\n"),
            Send("\x1bR\r\n", {Send("0A\r\n", GoOn()), TraceAsIs("Restore factory settings command failed!"), Return(0)}),
            Send("0A\r\n", GoOn()),
            Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            NeedSerialObject(kFailed),
            Clear(GoOn()),
            Trace("%s - Weight\n"), kSendWeightCommand,
            Pause(500),
            Receive(65, 3, nullptr, kFailed),
            If([](const Run& run) { return run.repeated == 0 || run.answer.empty(); }, kFailed),
            ParseWith(ParseOhaus),
            If(StatusIs(0), kFailed),
            Trace("%s - weight = %.2lf gr.\n\n", Stored()),
            If(Not(Holds("?")), {Return(1)}),
            TraceAsIs("Unstable weight!"),
            If(Mode(0), kFailed),
            Return(1)}},
    }};

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

const std::vector<Dialogue> kDialogues = {
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
    ExpectEveryFaultMet({kOhaus, kDialogues, Make<WbalanceOHAUS_SPU602>()});
}

}  // namespace
}  // namespace faults
