#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

int ParseKern(const std::string& answer, double* weight, int* decimals) {
    if (answer.size() < 12) return 0;
    const std::string record = answer.substr(answer[0] == 'A' ? 5 : 0, 12);
    const std::string field = record.substr(1, 7);
    if (decimals != nullptr && field.find('.') != std::string::npos) *decimals = 7;
    const double magnitude = std::strtod(field.c_str(), nullptr);
    if (weight != nullptr) *weight = record[0] == '-' ? -magnitude : magnitude;
    return record.size() == 12 && record[11] == 'S' ? 1 : 2;
}

// clang-format off

const Step kReceive = [](Run& run) { return Carry({EmptyAnswer(), Collect(Fail())}, run); };

const Steps kConclude = {Trace("%s - weight = %.2lf gr.\n\n", Stored()), Return(1)};
const Step kNeedAcknowledgement = If(Not(Holds("A00")), Fail());
const Step kParse = ParseWith(ParseKern);

const Step kNoteTime = Do([](Run& run) { run.start = run.balance.Now(); });
/// The time is measured before the pause.
const Step kPauseUntilFiveSeconds = [](Run& run) {
    const bool over = run.balance.Now() - run.start >= 5000;
    run.balance.Pause(200);
    return Flow{over ? Flow::LeavePasses : Flow::GoOn, 0};
};
const Step kAddReading = Do([](Run& run) { run.sum += run.reading; });

}  // namespace

template <>
Description TableOf<WbalanceKern_EW_EGN_EWB>() {
    return Endless({
    "Kern EW/EG-N/EWB",
    {0, 1200, 0, 8, 2, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            Ready(),
            Trace("%s - Tare\n"), Send("T \r\n"), kReceive,
            If(Holds("A00"), {Return(1)}, Fail())}},
        {"TareSet", {Return(0)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Ready(),
            Trace("%s - Weight\n"),
            If(Mode(2), {Send("O8\r\n")}, {Send("O9\r\n")}),
            kReceive, kNeedAcknowledgement,
            kParse,
            If(Not(StatusIs(0)), kConclude),
            If(Mode(2), {TraceAsIs("Weight procedure failed!"), Return(0)}),
            EmptyAnswer(), kNoteTime,
            Passes(1000, {
                Collect(GoOn()),
                kParse,
                If(Not(StatusIs(0)), kConclude),
                kPauseUntilFiveSeconds}),
            If(Mode(0), {TraceAsIs("Weight procedure failed!"), Return(0)}),
            Trace("%s - Stable Weight STOP\n"), Send("O0\r\n"),
            kReceive, kNeedAcknowledgement,
            Passes(5, {Read(2), kAddReading}),
            Store(FifthOfSum()),
            Return(1)}},
    }});
}

// clang-format on

}  // namespace faults
