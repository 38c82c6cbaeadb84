#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"

namespace faults {
namespace {

// clang-format off

const Step kReceive = Receive(33, 3, "\r\n", Fail());
const Step kReceiveOrGoOn = Receive(33, 3, "\r\n", GoOn());
const Step kReceiveOrClose = Receive(33, 3, "\r\n", CloseAndFail());
const Step kTraceStored = Trace("%s - weight = %.2lf\n\n", Stored());

const Steps kStoreZero = {Store(Constant(0.0)), Return(0)};

const Steps kTareSetStandard = {
    Do([](Run& run) { run.status = run.balance.Perform({"Tare"}, nullptr, nullptr); }),
    If(StatusIs(0), Fail()),
    Ready(),
    SendNumber("B %.2lf\r\n", Preset(), "%s - Set tare at %.2lf\n", 32, "a command"),
    Pause(2000),
    Read(0),
    // A difference of magnitudes.
    If([](const Run& run) { return std::fabs(run.reading) - std::fabs(run.call.preset) < 0.1; },
       {Return(1)}, Fail())};

const Steps kTareSetSics = {
    Ready(),
    Trace("%s - Tare\n"), Send("T\r\n"), kReceive,
    If(Holds("T S "),
       {ParseMettlerWithoutDecimals(), Trace("%s - weight = %.2lf\n\n", Value())},
       {Trace("%s - Command fail!\n\n")}),
    SendNumber("TA %.2lf g\r\n", PresetPlusValue(), "%s - Set tare at %.2lf\n", 32, "a command"),
    Receive(33, 3, "\r\n", {Return(1)}),
    If(Not(Holds("TA A ")), {Trace("%s - Command fail!\n")}),
    Return(1)};

const Description kMettlerPM = {
    "Mettler PM",
    {0, 600, 2, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {
            OpenAndClear(),
            If(FlagA(), {
                Trace("%s - Reset\n"), Send("@\r\n", CloseAndFail()), Pause(500), kReceiveOrClose,
                Trace("%s - Unstable weight\n"), Send("SI\r\n", CloseAndFail()), kReceiveOrClose,
                Trace("%s - Reset\n"), Send("@\r\n", CloseAndFail()), Pause(500), kReceiveOrClose,
                If(Holds("I4 ", 32),
                   {Do([](Run& run) { run.balance.protocol = 1; }), Trace("%s - PM MT-SICS protocol\n\n")},
                   {Do([](Run& run) { run.balance.protocol = 0; }), Trace("%s - Standard PM protocol\n\n")})}),
            Trace("%s - Unstable weight\n"), Send("SI\r\n", CloseAndFail()), Pause(500), kReceiveOrClose,
            Do([](Run& run) { run.balance.flagA = 0; }),
            Return(1)}},
        {"Tare", {
            Ready(),
            Trace("%s - Tare\n"), Send("T\r\n"), Pause(500), kReceiveOrGoOn, Pause(2000),
            Read(0),
            If(ReadingBelow(0.1), {Return(1)}, Fail())}},
        {"TareSet", {
            NeedSerialObject(),
            If([](const Run& run) { return run.balance.protocol == 1; }, kTareSetSics, kTareSetStandard)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            Ready(),
            If(Mode(0), {
                Trace("%s - Stable weight\n"), Send("S\r\n"), Pause(1000), kReceive,
                If(Holds("S "), {ParseMettler(), Store(Value()), kTraceStored, Return(1)}, Fail())}),
            If(Mode(2), {
                Trace("%s - Ustable weight\n"), Send("SI\r\n"), kReceive,
                If(Holds("S "), {ParseMettler(), Store(Value()),
                                 Trace("%s - Stable weight = %.2lf\n\n", Stored()), Return(1)}),
                If(Holds("SD "), {ParseMettler(), Store(Value()),
                                  Trace("%s - Unstable weight = %.2lf\n\n", Stored()), Return(2)}, Fail())}),
            If(Mode(1), {
                Trace("%s - Stable weight\n"), Send("S\r\n"), kReceiveOrGoOn,
                If(Both(Came(), Holds("S ")), {ParseMettler(), Store(Value()), kTraceStored, Return(1)}),
                Pause(1000),
                Passes(5, {
                    Clear({LeavePasses()}),
                    Trace("%s - Ustable weight\n"), Send("SI\r\n", {LeavePasses()}),
                    Receive(33, 3, "\r\n", {If(Not(Seen()), kStoreZero), Pause(500), NextPass()}),
                    // The trace comes ahead of the store.
                    If(Holds("S "), {ParseMettler(), kTraceStored, Store(Value()), Return(1)}),
                    If(Holds("SD "), {ParseMettler(), AddToSum(), Pause(500), NextPass()}),
                    Store(Constant(0.0)), Return(0)}),
                If(Seen(), {Store(FifthOfSum()), Return(2)}, kStoreZero)}),
            Return(0)}},
    },
    1, 0, 0, 0};

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

const std::vector<Dialogue> kDialogues = {
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
    ExpectEveryFaultMet({kMettlerPM, kDialogues, Make<WbalanceMettlerPM>()});
}

}  // namespace
}  // namespace faults
