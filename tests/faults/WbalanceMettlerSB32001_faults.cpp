#include <gtest/gtest.h>

#include "Matrix.h"
#include "Steps.h"

namespace faults {
namespace {

// clang-format off

const Step kReceive = Receive(33, 3, "\r\n", Fail());
const Step kReceiveOrGoOn = Receive(33, 3, "\r\n", GoOn());
const Step kReceiveOrClose = Receive(33, 3, "\r\n", CloseAndFail());
const Step kReceive32 = Receive(32, 3, "\r\n", Fail());
const Step kTraceWeight = Trace("%s - weight = %.2lf cc.\n\n", Stored());

const Steps kStoreValue = {ParseMettler(), Store(Value()), kTraceWeight};
const Steps kStoreZero = {Store(Constant(0.0)), kTraceWeight, Return(0)};
const Steps kCommandFails = {Trace("%s - Command fail!\n\n"), Return(0)};

const Step kBackToWeight = If(FlagB(), {
    Trace("%s - Set weight mode\n"), Send("DW\r\n"), Pause(500), kReceiveOrClose,
    Do([](Run& run) { run.balance.flagB = 0; })});

const Description kMettlerSB32001 = {
    "Mettler SB",
    {0, 2400, 2, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {
            OpenAndClear(),
            If(FlagC(), {
                Trace("%s - Reset\n"), Send("@\r\n", CloseAndFail()), Pause(500), kReceiveOrClose,
                If(Not(Holds("I4 ", 32)), CloseAndFail()),
                Trace("%s - Ustable weight\n"), Send("SI\r\n", CloseAndFail()), Pause(500), kReceiveOrClose,
                Do([](Run& run) { run.balance.flagC = 0; })}),
            Return(1)}},
        {"Tare", {
            Ready(), kBackToWeight,
            Trace("%s - Tare\n"), Send("T\r\n"), kReceive32,
            If(Holds("T S "), {Trace("%s - Success.\n\n"), Return(1)}, kCommandFails)}},
        {"TareSet", {
            Ready(), kBackToWeight,
            Trace("%s - Tare\n"), Send("T\r\n"), kReceiveOrGoOn,
            If(Holds("T S "), {ParseMettlerWithoutDecimals(), Trace("%s - weight = %.2lf cc.\n\n", Value())},
               {If(Came(), {Trace("%s - Command fail!\n\n")})}),
            SendNumber("TA %.2lf g\r\n", PresetPlusValue(), "%s - Set tare to %.2lf\n", 32, "a command"),
            kReceiveOrGoOn,
            If(Both(Came(), Not(Holds("TA A "))), {Trace("%s - Command fail!\n\n")}),
            Return(1)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            Ready(), kBackToWeight,
            If(Mode(0), {
                Trace("%s - Stable weight\n"), Send("S\r\n"), Pause(1000), kReceive,
                If(Holds("S S "), Then(kStoreValue, {Return(1)}), kCommandFails)}),
            If(Mode(2), {
                Trace("%s - Ustable weight\n"), Send("SI\r\n"), kReceive,
                If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                If(Holds("S D "), Then(kStoreValue, {Return(2)}), kCommandFails)}),
            If(Mode(1), {
                Trace("%s - Stable weight\n"), Send("S\r\n"), kReceiveOrGoOn,
                If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                If(Came(), {Trace("%s - Command fail!\n\n")}),
                Pause(1000),
                Passes(5, {
                    Clear({LeavePasses()}),
                    Trace("%s - Ustable weight\n"), Send("SI\r\n", {LeavePasses()}),
                    Receive(33, 3, "\r\n", {If(Not(Seen()), kStoreZero), Pause(500), NextPass()}),
                    If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                    If(Holds("S D "), {ParseMettler(), AddToSum(), Pause(500), NextPass()}),
                    Trace("%s - Command fail!\n\n"),
                    If([](const Run&) { return true; }, kStoreZero)}),
                If(Seen(), {Store(FifthOfSum()), kTraceWeight, Return(2)}, kStoreZero)}),
            Return(0)}},
        {"DisplayMessage", {
            Ready(),
            Do([](Run& run) { run.balance.Trace("Mettler SB - Display \"" + run.call.text + "\"\n"); }),
            [](Run& run) {
                return run.balance.Send("D \"" + run.call.text + "\"\r\n") != 0 ? Flow{} : Flow{Flow::Done, 0};
            },
            kReceive32,
            Do([](Run& run) { run.balance.flagB = 1; }), Return(1)}},
    },
    0, 0, 1, 0};

const Exchange kReset = {"@\r\n", {{"I4 A \"1126493049\"\r\n", 20}}};
const Exchange kTen = {"SI\r\n", {{"S D      10.00 g\r\n", 20}}};
const Exchange kSeven = {"SI\r\n", {{"S S      -7.5 g\r\n", 20}}};
const Exchange kDisplay = {"D \"READY\"\r\n", {{"D A\r\n", 20}}};
const Exchange kBack = {"DW\r\n", {{"DW A\r\n", 20}}};
const Exchange kTare = {"T\r\n", {{"T S       2.25 g\r\n", 20}}};
const Exchange kStable = {"S\r\n", {{"S S     100.00 g\r\n", 20}}};
const Exchange kBusy = {"S\r\n", {{"S I\r\n", 20}}};
const Act kReady = {{"IsReady"}, {kReset, kTen}};
const Act kShow = {{"DisplayMessage", 0, 0, "READY"}, {kReset, kTen, kDisplay}};

constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;
constexpr long kReceiveBound = 6100;
constexpr long kAverage = kReceiveBound + 1000 + 5 * (kReceiveBound + 500);

const std::vector<Dialogue> kDialogues = {
    {"Reset at the first readiness", kReady, 1, kNoWeight, kNoDecimals, 1000 + 2 * kReceiveBound},
    {"Reset with another answer", {{"IsReady"}, {{"@\r\n", {{"ES\r\n", 20}}}}}, 0, kNoWeight, kNoDecimals, 500 + kReceiveBound},
    {"Readiness without a reset", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0, {kReady}},
    {"Tare", {{"Tare"}, {kTare}}, 1, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
    {"Tare refused", {{"Tare"}, {{"T\r\n", {{"T I\r\n", 20}}}}}, 0, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
    {"Tare behind a text", {{"Tare"}, {kBack, kTare}}, 1, kNoWeight, kNoDecimals, 500 + 2 * kReceiveBound, {kShow}},
    {"Preset tare", {{"TareSet", 0, 10.0}, {kTare, {"TA 12.25 g\r\n", {{"TA A      12.25 g\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 2 * kReceiveBound, {kReady}},
    {"Preset tare behind a text, refused",
     {{"TareSet", 0, 10.0}, {kBack, {"T\r\n", {{"T I\r\n", 20}}}, {"TA 10.00 g\r\n", {{"TA L\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 500 + 3 * kReceiveBound, {kShow}},
    {"Stable weight", {{"Weight", 0}, {kStable}}, 1, 100.0, 2, 1000 + kReceiveBound, {kReady}},
    {"Stable weight behind a text", {{"Weight", 0}, {kBack, kStable}}, 1, 100.0, 2, 1500 + 2 * kReceiveBound, {kShow}},
    {"Stable weight while the pan moves", {{"Weight", 0}, {kBusy}}, 0, 0.0, kNoDecimals, 1000 + kReceiveBound, {kReady}},
    {"Immediate weight, dynamic", {{"Weight", 2}, {kTen}}, 2, 10.0, 2, kReceiveBound, {kReady}},
    {"Immediate weight, stable", {{"Weight", 2}, {kSeven}}, 1, -7.5, 1, kReceiveBound, {kReady}},
    {"Stable weight in mode 1", {{"Weight", 1}, {kStable}}, 1, 100.0, 2, kAverage, {kReady}},
    {"Average of five", {{"Weight", 1}, {kBusy, kTen, kTen, kTen, kTen, kTen}}, 2, 10.0, 2, kAverage, {kReady}},
    {"Average of two and three silent passes", {{"Weight", 1}, {kTen, kTen}}, 2, 4.0, 2, kAverage, {kReady}},
    {"Stable in the second pass", {{"Weight", 1}, {kTen, kSeven}}, 1, -7.5, 1, kAverage, {kReady}},
    {"Refused in the second pass", {{"Weight", 1}, {kTen, {"SI\r\n", {{"ES\r\n", 20}}}}}, 0, 0.0, 2, kAverage, {kReady}},
    {"Unknown mode behind a text", {{"Weight", 7}, {kBack}}, 0, 0.0, kNoDecimals, 500 + kReceiveBound, {kShow}},
    {"Text", {{"DisplayMessage", 0, 0, "READY"}, {kDisplay}}, 1, kNoWeight, kNoDecimals, kReceiveBound, {kReady}},
};

// clang-format on

TEST(WbalanceMettlerSB32001Faults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({kMettlerSB32001, kDialogues, Make<WbalanceMettlerSB32001>()});
}

}  // namespace
}  // namespace faults
