#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

int ParseGibertini(const std::string& answer, double* weight, int* decimals) {
    if (answer.size() < 19) return 0;
    if (decimals != nullptr) *decimals = 2;
    // Every later record must be valid, too.
    if (answer.size() > 19 && ParseGibertini(answer.substr(19), nullptr, nullptr) == 0) return 0;
    if (weight != nullptr) *weight = std::strtod(answer.substr(0, 10).c_str(), nullptr);
    if (answer[15] != 'D' && answer[15] != 'T') return 0;
    if (answer[16] == 'S') return 1;
    return answer[16] == 'I' ? 2 : 0;
}

// clang-format off

const Step kNoteTime = Do([](Run& run) { run.start = run.balance.Now(); });
const Step kPauseUntilTwentySeconds = [](Run& run) {
    const bool over = run.balance.Now() - run.start >= 20000;
    run.balance.Pause(200);
    return Flow{over ? Flow::LeavePasses : Flow::GoOn, 0};
};

}  // namespace

template <>
Description TableOf<WbalanceGibertini>() {
    return Endless({
    "Gibertini",
    {0, 9600, 1024, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            Ready(),
            Trace("%s - Tare\n"), Send("T\r"),
            EmptyAnswer(), Collect(Fail()),
            Do([](Run& run) { run.status = ParseGibertini(run.answer, nullptr, nullptr); }),
            If(StatusIs(0), Fail(), {Return(1)})}},
        {"TareSet", {Return(0)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Ready(),
            Trace("%s - Weight\n"), Send("B\r"),
            EmptyAnswer(), kNoteTime,
            Passes(1000, {
                Collect(GoOn()),
                ParseWith(ParseGibertini),
                If(Not(StatusIs(0)), {Trace("%s - weight = %.2lf gr.\n\n", Stored()), Return(1)}),
                kPauseUntilTwentySeconds}),
            TraceAsIs("Weight procedure failed!"),
            Return(0)}},
    }});
}

// clang-format on

}  // namespace faults
