#include "Steps.h"
#include "Tables.h"

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

}  // namespace

template <>
Description TableOf<WbalanceMettlerSB32001>() {
    return {
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
            RefuseTextOf(58, std::string::npos),
            Do([](Run& run) { run.balance.Trace("Mettler SB - Display \"" + run.call.text + "\"\n"); }),
            [](Run& run) {
                return run.balance.Send("D \"" + run.call.text + "\"\r\n") != 0 ? Flow{} : Flow{Flow::Done, 0};
            },
            kReceive32,
            Do([](Run& run) { run.balance.flagB = 1; }), Return(1)}},
    },
    0, 0, 1, 0};
}

// clang-format on

}  // namespace faults
