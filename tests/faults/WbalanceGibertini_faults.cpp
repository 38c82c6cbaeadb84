#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"

namespace faults {
namespace {

int ParseGibertini(const std::string& answer, double* weight, int* decimals) {
    if (answer.size() < 19) return 0;
    if (decimals != nullptr) *decimals = 2;
    // Every later record must be one, too.
    if (answer.size() > 19 && ParseGibertini(answer.substr(19), nullptr, nullptr) == 0) return 0;
    if (weight != nullptr) *weight = std::strtod(answer.substr(0, 10).c_str(), nullptr);
    if (answer[15] != 'D' && answer[15] != 'T') return 0;
    if (answer[16] == 'S') return 1;
    return answer[16] == 'I' ? 2 : 0;
}

// clang-format off

const Step kNoteTime = Do([](Run& run) { run.answer.clear(); run.start = run.balance.Now(); });
const Step kReceiveMore = Do([](Run& run) { run.balance.ReceiveAll(run.answer, 64, '\n'); });
const Step kPauseUntilTwentySeconds = [](Run& run) {
    const bool over = run.balance.Now() - run.start >= 20000;
    run.balance.Pause(200);
    return Flow{over ? Flow::LeavePasses : Flow::GoOn, 0};
};

const Description kGibertini = {
    "Gibertini",
    {0, 9600, 1024, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            Ready(),
            Trace("%s - Tare\n"), Send("T\r"),
            [](Run& run) {
                run.answer.clear();
                return run.balance.ReceiveAll(run.answer, 64, '\n') ? Flow{} : Flow{Flow::Done, 0};
            },
            Do([](Run& run) { run.status = ParseGibertini(run.answer, nullptr, nullptr); }),
            If(StatusIs(0), Fail(), {Return(1)})}},
        {"TareSet", {Return(0)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Ready(),
            Trace("%s - Weight\n"), Send("B\r"),
            kNoteTime,
            Passes(1000, {
                kReceiveMore,
                ParseWith(ParseGibertini),
                If(Not(StatusIs(0)), {Trace("%s - weight = %.2lf gr.\n\n", Stored()), Return(1)}),
                kPauseUntilTwentySeconds}),
            TraceAsIs("Weight procedure failed!"),
            Return(0)}},
    }};

/// The driver with a readiness that is the line's alone.
Description WithReadinessOfTheLine(Description description) {
    description.operations["IsReady"] = {OpenAndClear(), Return(1)};
    return description;
}

Exchange Answer(const char* command, const char* text) {
    return {command, {{text, 60}}};
}
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;
constexpr long kGather = 3 * 3100;
constexpr long kWeightBound = 20000 + kGather + 200;

const std::vector<Dialogue> kDialogues = {
    {"Readiness of the line", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Tare", {{"Tare"}, {Answer("T\r", "      0.00 g   TS\r\n")}}, 1, kNoWeight, kNoDecimals, kGather},
    {"Tare with an error", {{"Tare"}, {Answer("T\r", "      0.00 g   TE\r\n")}}, 0, kNoWeight, kNoDecimals, kGather},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {Answer("B\r", "    123.45 g   DS\r\n")}}, 1, 123.45, 2, kWeightBound},
    {"Weight that moves", {{"Weight", 1}, {Answer("B\r", "   -12.345 g   DI\r\n")}}, 1, -12.345, 2, kWeightBound},
    {"Two records", {{"Weight", 2}, {Answer("B\r", "    123.45 g   DS\r\n    123.46 g   DI\r\n")}}, 1, 123.45, 2, kWeightBound},
    {"Record of a later round", {{"Weight", 0}, {{"B\r", {{"      7.25 g   DS\r\n", 9500}}}}}, 1, 7.25, 2, kWeightBound},
    {"Overload", {{"Weight", 0}, {Answer("B\r", "    999.99 g   OS\r\n")}}, 0, 999.99, 2, kWeightBound},
    {"Silence", {{"Weight", 0}, {}}, 0, kNoWeight, kNoDecimals, kWeightBound},
};

/// As it is, readiness asks for a weight and a weight for readiness, and no byte reaches the instrument: a
/// call that fails ends it.
const std::vector<Dialogue> kEndlessDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Tare", {{"Tare"}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
    {"Weight", {{"Weight", 0}, {}}, 0, kNoWeight, kNoDecimals, 10, {}, true},
};

// clang-format on

TEST(WbalanceGibertiniFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({WithReadinessOfTheLine(kGibertini), kDialogues,
                         Make<WithLineReadiness<WbalanceGibertini>>()});
}

TEST(WbalanceGibertiniFaults, Every_failing_call_ends_the_reentry_as_it_should) {
    ExpectEveryFaultMet({kGibertini, kEndlessDialogues, Make<WbalanceGibertini>()});
}

}  // namespace
}  // namespace faults
