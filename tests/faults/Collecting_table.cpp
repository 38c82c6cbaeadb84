#include "Collecting_table.h"

namespace faults {
namespace {

int ParseCollected(const std::string& answer, double* weight, int* /*decimals*/) {
    *weight = 0.0;
    const auto holds = [&](const char* mark) { return answer.find(mark) != std::string::npos; };
    const bool stable = holds("1+") || holds("1-");
    if (!stable && !holds("U+") && !holds("U-")) return 0;
    // A '+' anywhere wins over a '-'.
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
    while (true) {
        std::string piece;
        if (!run.balance.Receive(piece, 129, 1, nullptr) || piece.empty()) break;
        run.balance.Pause(run.repeated);
        // What passes 128 characters is dropped.
        run.answer = (run.answer + piece).substr(0, 128);
        run.balance.Trace("Read from scale this attempt: " + piece +
                          ". Complete answer from scale so far: " + run.answer + "\n\n");
    }
});

// clang-format on

}  // namespace

// clang-format off

Description Collecting(const char* displayName, const char* command, const Steps& tareStart) {
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
                        ParseWith(ParseCollected),
                        If(Either(StatusIs(1), Both(StatusIs(2), Mode(2))),
                           {Trace("%s - weight = %.2lf gr.\n\n", Stored()), Return(1)})}),
                    TraceAsIs("Bad scale answer. Retring read...\n")}),
                TraceAsIs("Weight procedure failed!"),
                Return(0)}},
        }};
}

std::vector<Dialogue> CollectingDialogues(const char* command) {
    const auto answer = [=](const char* text) { return Exchange{command, {{text, 60}}}; };
    const Exchange stable = answer("1+   12.34 g\r\n");
    const Exchange unstable = answer("U-    0.50 g\r\n");
    const Exchange zero = answer("1+    0.05 g\r\n");
    const Exchange inPieces = {command, {{"1-", 60}, {"   7.25", 300}, {" g\r\n", 900}}};
    const Act ready = {{"IsReady"}, {stable}};
    const double noWeight = kUntouchedWeight;
    const int noDecimals = kUntouchedDecimals;
    // Five requests: at most three pieces, each with its wait and its pause, and a wait for nothing.
    const long weightBound = 5 * (3 * 1100 + 1000);

    return {
        {"Readiness", ready, 1, noWeight, noDecimals, weightBound},
        {"Weight without a readiness before", {{"Weight", 0}, {stable}}, 0, 0.0, noDecimals, 0},
        {"Stable weight", {{"Weight", 0}, {stable}}, 1, 12.34, noDecimals, weightBound, {ready}},
        {"Stable weight in pieces", {{"Weight", 1}, {inPieces}}, 1, -7.25, noDecimals, weightBound, {ready}},
        {"A plus behind the mark", {{"Weight", 0}, {answer("1-  3.00 g +2\r\n")}}, 1, 2.0, noDecimals, weightBound, {ready}},
        {"Unstable weight asked for", {{"Weight", 2}, {unstable}}, 1, -0.5, noDecimals, weightBound, {ready}},
        {"Unstable twice, then stable", {{"Weight", 0}, {unstable, unstable, stable}}, 1, 12.34, noDecimals, weightBound, {ready}},
        {"Unstable five times", {{"Weight", 0}, {unstable, unstable, unstable, unstable, unstable}}, 0, -0.5, noDecimals,
         weightBound, {ready}},
        {"Silence", {{"Weight", 0}, {}}, 0, 0.0, noDecimals, weightBound, {ready}},
        {"Tare", {{"Tare"}, {zero, zero}}, 1, noWeight, noDecimals, 2 * weightBound + 2000, {ready}},
        {"Tare that leaves too much", {{"Tare"}, {answer("1-    0.1 g\r\n"), answer("1-    0.1 g\r\n")}}, 0, noWeight, noDecimals,
         2 * weightBound + 2000, {ready}},
        {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, noWeight, noDecimals, 0},
    };
}

// clang-format on

}  // namespace faults
