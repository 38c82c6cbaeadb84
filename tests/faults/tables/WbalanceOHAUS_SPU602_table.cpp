#include "Steps.h"
#include "Tables.h"

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

// The driver waits for the answer even if the port did not take the command.
const Step kSendWeightCommand = Do([](Run& run) {
    run.repeated = run.balance.Send(run.call.mode == 0 ? "SP\r\n" : "P\r\n");
});

}  // namespace

template <>
Description TableOf<WbalanceOHAUS_SPU602>() {
    return {
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
}

// clang-format on

}  // namespace faults
