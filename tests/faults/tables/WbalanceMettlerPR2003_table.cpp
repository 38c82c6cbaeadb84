#include "Steps.h"
#include "Tables.h"

namespace faults {

// clang-format off

namespace {

Steps WeightDisplay(const Steps& onNothing) {
    return {Trace("%s - Set weight mode\n"), Send("DW\r\n"), Pause(500), Receive(33, 3, "\r\n", onNothing),
            Do([](Run& run) { run.balance.flagB = 0; })};
}

Description MettlerPR(const Settings& settings) {
    const Step receive = Receive(33, 3, "\r\n", Fail());
    const Step receiveOrGoOn = Receive(33, 3, "\r\n", GoOn());
    const Step backToWeight = If(FlagB(), WeightDisplay(CloseAndFail()));
    const Step parse = ParseMettlerWithoutDecimals();
    const Step traceWeight = Trace("%s - weight = %.2lf cc.\n", Stored());
    const Steps commandFails = {Trace("%s - Command fail!\n"), Return(0)};
    const Steps storeZero = {Store(Constant(0.0)), Return(0)};
    const Step clearFlagB = Do([](Run& run) { run.balance.flagB = 0; });
    const Step traceText = Do([](Run& run) {
        run.balance.Trace("Mettler PR - Display \"" + run.call.text + "\"\n");
    });
    const Step sendText = [](Run& run) {
        return run.balance.Send("D \"" + run.call.text + "\"\r\n") != 0 ? Flow{} : Flow{Flow::Done, 0};
    };

    return {
        "Mettler PR",
        settings,
        {
            {"IsReady", {
                OpenAndClear(),
                If(FlagC(), {
                    Trace("%s - Reset\n"), Send("@\r\n", CloseAndFail()), Pause(500),
                    Receive(33, 3, "\r\n", CloseAndFail()),
                    If(Not(Holds("I4 ", 32)), CloseAndFail()),
                    Do([](Run& run) { run.balance.flagC = 0; })}),
                Return(1)}},
            {"Tare", {
                Ready(),
                backToWeight,
                Trace("%s - Tare"), Send("T\r\n"), receive,
                If(Holds("T S "), {Trace("%s - Success\n"), Return(1)}),
                Trace("%s - Command fail!\n\n"), Return(0)}},
            {"TareSet", {
                Ready(),
                backToWeight,
                Trace("%s - Tare\n"), Send("T\r\n"), receiveOrGoOn,
                If(Holds("T S "), {parse, Trace("%s - weight = %.2lf cc.\n", Value())},
                   {If(Came(), {Trace("%s - Command fail!\n")})}),
                SendNumber("TA %.2lf g\r\n", PresetPlusValue(), "%s - Set tare to %.2lf\n", 32, "a command"),
                receiveOrGoOn,
                If(Both(Came(), Not(Holds("TA A "))), {Trace("%s - Command fail!\n")}),
                Trace("%s - Success.\n"), Return(1)}},
            {"RestoreFactorySettings", {Return(1)}},
            {"Weight", {
                Store(Constant(0.0)),
                Ready(),
                backToWeight,
                If(Mode(0), {
                    Trace("%s - Stable weight\n"), Send("S\r\n"), Pause(1000), receive,
                    If(Holds("S S "), {parse, Store(Value()), traceWeight, Return(1)}, commandFails)}),
                If(Mode(2), {
                    Trace("%s - Unstable weight\n"), Send("SI\r\n"), receive,
                    If(Holds("S S "), {parse, Store(Value()), traceWeight, Return(1)}),
                    If(Holds("S D "), {parse, Store(Value()), traceWeight, Return(2)}, commandFails)}),
                If(Mode(1), {
                    Trace("%s - Stable weight\n"), Send("S\r\n"), receiveOrGoOn,
                    If(Holds("S S "), {parse, Store(Value()), traceWeight, Return(1)}),
                    If(Came(), {Trace("%s - Command fail!\n")}),
                    Pause(1000),
                    Passes(5, {
                        Clear({LeavePasses()}),
                        Trace("%s - Unstable weight\n"), Send("SI\r\n", {LeavePasses()}),
                        Pause(500),
                        Receive(33, 3, "\r\n", {If(Not(Seen()), storeZero), Pause(500), NextPass()}),
                        // The weight is traced before it is stored.
                        If(Holds("S S "), {parse, traceWeight, Store(Value()), Return(1)}),
                        If(Holds("S D "), {parse, AddToSum(), Pause(500), NextPass()}),
                        Trace("%s - Command fail!\n"), Store(Constant(0.0)), Return(0)}),
                    If(Seen(), {Store(FifthOfSum()), Return(2)}, storeZero)}),
                Return(0)}},
            {"TurnItOn", {
                Ready(),
                Trace("%s - Switch on\n"), Send("PWR 1\r\n"), Pause(1000), receive,
                Trace("%s - Set weight mode\n"), Send("DW\r\n"), Pause(500), receive,
                clearFlagB, Return(1)}},
            {"TurnItOff", Then(Then({Ready()}, WeightDisplay(Fail())), {
                Trace("%s - Switch on\n"), Send("PWR 0\r\n"), Pause(1000), receive, Return(1)})},
            {"DisplayMessage", {
                Ready(),
                RefuseTextOf(58, 63),
                EndProcessForTextOf(64),
                traceText, sendText, receive,
                Do([](Run& run) { run.balance.flagB = 1; }), Return(1)}},
        },
        0, 0, 1, 0};
}

}  // namespace

template <>
Description TableOf<WbalanceMettlerPR2003>() {
    return MettlerPR({0, 2400, 2, 7, 0, 0, 1, 'S'});
}

template <>
Description TableOf<WbalanceMettlerXS>() {
    return MettlerPR({0, 9600, 0, 8, 0, 0, 1, 'S'});
}

// clang-format on

}  // namespace faults
