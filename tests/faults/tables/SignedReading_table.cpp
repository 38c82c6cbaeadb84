#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

int ParseSigned(const std::string& answer, double* weight, int* /*decimals*/) {
    *weight = 0.0;
    const auto holds = [&](const char* mark) { return answer.find(mark) != std::string::npos; };
    const bool stable = holds("1+") || holds("1-");
    if (!stable && !holds("U+") && !holds("U-")) return 0;
    // If there is a '+' anywhere, a '-' does not count.
    const bool positive = answer.find('+') != std::string::npos;
    const std::string rest = answer.substr(answer.find(positive ? '+' : '-') + 1);
    const double number = std::strtod(rest.c_str(), nullptr);
    *weight = (positive ? 1 : -1) * number;
    return stable ? 1 : 2;
}

// clang-format off

/// The pause per piece that the environment may set.
int PauseMs() {
    const char* set = std::getenv("WBALANCE_SLEEP");
    return set != nullptr ? static_cast<int>(std::strtol(set, nullptr, 10)) : 100;
}

const Step kTracePause = Do([](Run& run) {
    run.repeated = PauseMs();
    run.balance.Trace("Sleep timeout " + std::to_string(run.repeated) + " ms\n");
});

const Step kCollect = Do([](Run& run) {
    run.answer.clear();
    // 128 characters end the collection, and a last piece is cut there.
    while (run.answer.size() < 128) {
        std::string piece;
        if (!run.balance.Receive(piece, 129, 1, nullptr) || piece.empty()) break;
        run.balance.Pause(run.repeated);
        run.answer = (run.answer + piece).substr(0, 128);
        run.balance.Trace("Read from scale this attempt: " + piece +
                          ". Complete answer from scale so far: " + run.answer + "\n\n");
    }
});

Description SignedReading(const char* displayName, const char* command, const Steps& tareStart) {
    return {
        displayName,
        {0, 2400, 0, 8, 0, 0, 1, 'S'},
        {
            {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
            {"Tare", Then(tareStart, {
                Trace("%s - Tare\n"), Send("T"),
                Pause(2000),
                Read(0),
                If(ReadingBelow(0.1), {Return(1)}, Fail())})},
            {"TareSet", {Return(0)}},
            {"RestoreFactorySettings", {Return(1)}},
            {"Weight", {
                NeedSerialObject(),
                Trace("%s - Weight\n"),
                Store(Constant(0.0)),
                kTracePause,
                Passes(5, {
                    TraceAsIs("Sending weight command..."),
                    Send(command, {TraceAsIs("...failed!\n"), Return(0)}),
                    TraceAsIs("success!\n"),
                    kCollect,
                    If([](const Run& run) { return !run.answer.empty(); }, {
                        ParseWith(ParseSigned),
                        If(Either(StatusIs(1), Both(StatusIs(2), Mode(2))),
                           {Trace("%s - weight = %.2lf gr.\n\n", Stored()), Return(1)})}),
                    TraceAsIs("Bad scale answer. Retring read...\n")}),
                TraceAsIs("Weight procedure failed!"),
                Return(0)}},
        }};
}

}  // namespace

template <>
Description TableOf<WbalanceDIC_XL1800>() {
    return SignedReading("Denver Instrument Company XL-1800", "?1", {NeedSerialObject()});
}

template <>
Description TableOf<WbalanceSetra_EL_2000S>() {
    return SignedReading("Setra EL-2000S", "#", {Ready()});
}

// clang-format on

}  // namespace faults
