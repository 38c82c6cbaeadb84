#include "WbalanceMettlerPR2003_table.h"

namespace faults {

// clang-format off

namespace {

Steps WeightDisplay(const Steps& onNothing) {
    return {Trace("%s - Set weight mode\n"), Send("DW\r\n"), Pause(500), Receive(33, 3, "\r\n", onNothing),
            Do([](Run& run) { run.balance.flagB = 0; })};
}

}  // namespace

Description MettlerPR2003(const Settings& settings) {
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
                        // The trace comes ahead of the store.
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
                traceText, sendText, receive,
                Do([](Run& run) { run.balance.flagB = 1; }), Return(1)}},
        },
        0, 0, 1, 0};
}

std::vector<Dialogue> MettlerPR2003Dialogues() {
    const Exchange reset = {"@\r\n", {{"I4 A \"1126493049\"\r\n", 20}}};
    const Exchange display = {"D \"READY\"\r\n", {{"D A\r\n", 20}}};
    const Exchange back = {"DW\r\n", {{"DW A\r\n", 20}}};
    const Exchange tare = {"T\r\n", {{"T S       2.50 g\r\n", 20}}};
    const Exchange stable = {"S\r\n", {{"S S     100.00 g\r\n", 20}}};
    const Exchange busy = {"S\r\n", {{"S I\r\n", 20}}};
    const Exchange ten = {"SI\r\n", {{"S D      10.00 g\r\n", 20}}};
    const Exchange seven = {"SI\r\n", {{"S S      -7.5 g\r\n", 20}}};
    const Exchange error = {"SI\r\n", {{"ES\r\n", 20}}};
    const Act ready = {{"IsReady"}, {reset}};
    const Act show = {{"DisplayMessage", 0, 0, "READY"}, {reset, display}};
    const double noWeight = kUntouchedWeight;
    const int noDecimals = kUntouchedDecimals;
    const long receive = 6100;
    const long average = receive + 1000 + 5 * (receive + 1000);

    return {
        {"Reset at the first readiness", ready, 1, noWeight, noDecimals, 500 + receive},
        {"Readiness without a reset", {{"IsReady"}, {}}, 1, noWeight, noDecimals, 0, {ready}},
        {"Reset with another answer", {{"IsReady"}, {{"@\r\n", {{"ES\r\n", 20}}}}}, 0, noWeight, noDecimals, 500 + receive},
        {"Tare with the reset", {{"Tare"}, {reset, tare}}, 1, noWeight, noDecimals, 500 + 2 * receive},
        {"Tare", {{"Tare"}, {tare}}, 1, noWeight, noDecimals, receive, {ready}},
        {"Tare refused", {{"Tare"}, {{"T\r\n", {{"T I\r\n", 20}}}}}, 0, noWeight, noDecimals, receive, {ready}},
        {"Tare behind a text", {{"Tare"}, {back, tare}}, 1, noWeight, noDecimals, 500 + 2 * receive, {show}},
        {"Preset tare", {{"TareSet", 0, 10.0}, {tare, {"TA 12.50 g\r\n", {{"TA A      12.50 g\r\n", 20}}}}}, 1, noWeight,
         noDecimals, 2 * receive, {ready}},
        {"Preset tare behind a text, refused",
         {{"TareSet", 0, 10.0}, {back, {"T\r\n", {{"T I\r\n", 20}}}, {"TA 10.00 g\r\n", {{"TA L\r\n", 20}}}}}, 1, noWeight,
         noDecimals, 500 + 3 * receive, {show}},
        {"Stable weight", {{"Weight", 0}, {stable}}, 1, 100.0, noDecimals, 1000 + receive, {ready}},
        {"Stable weight behind a text", {{"Weight", 0}, {back, stable}}, 1, 100.0, noDecimals, 1500 + 2 * receive, {show}},
        {"Stable weight while the pan moves", {{"Weight", 0}, {busy}}, 0, 0.0, noDecimals, 1000 + receive, {ready}},
        {"Immediate weight, dynamic", {{"Weight", 2}, {ten}}, 2, 10.0, noDecimals, receive, {ready}},
        {"Immediate weight, stable", {{"Weight", 2}, {seven}}, 1, -7.5, noDecimals, receive, {ready}},
        {"Stable weight in mode 1", {{"Weight", 1}, {stable}}, 1, 100.0, noDecimals, average, {ready}},
        {"Average of five", {{"Weight", 1}, {busy, ten, ten, ten, ten, ten}}, 2, 10.0, noDecimals, average, {ready}},
        {"Average of three and two silent passes", {{"Weight", 1}, {ten, ten, ten}}, 2, 6.0, noDecimals, average, {ready}},
        {"Stable in the second pass", {{"Weight", 1}, {ten, seven}}, 1, -7.5, noDecimals, average, {ready}},
        {"Refused in the second pass", {{"Weight", 1}, {ten, error}}, 0, 0.0, noDecimals, average, {ready}},
        {"Unknown mode behind a text", {{"Weight", 3}, {back}}, 0, 0.0, noDecimals, 500 + receive, {show}},
        {"Switch on", {{"TurnItOn"}, {{"PWR 1\r\n", {{"PWR A\r\n", 20}}}, back}}, 1, noWeight, noDecimals,
         1500 + 2 * receive, {show}},
        {"Switch off", {{"TurnItOff"}, {back, {"PWR 0\r\n", {{"PWR A\r\n", 20}}}}}, 1, noWeight, noDecimals,
         1500 + 2 * receive, {ready}},
        {"Text", {{"DisplayMessage", 0, 0, "READY"}, {display}}, 1, noWeight, noDecimals, receive, {ready}},
    };
}

// clang-format on

}  // namespace faults
