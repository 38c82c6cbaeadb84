#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

// clang-format off

const Step kReceive = Receive(33, 3, nullptr, Fail());
const Step kReceiveOrGoOn = Receive(33, 3, nullptr, GoOn());
const Step kTraceWeight = Trace("%s - weight = %.2lf cc.\n\n", Stored());

const Steps kStoreValue = {ParseMettler(), Store(Value()), kTraceWeight};
const Steps kStoreZero = {Store(Constant(0.0)), kTraceWeight, Return(0)};
const Steps kCommandFails = {Trace("%s - Command fail!\n\n"), Return(0)};

}  // namespace

template <>
Description TableOf<WbalanceMettlerToledo>() {
    return {
    "Generic Mettler Toledo",
    {0, 2400, 2, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {
            OpenAndClear(),
            Trace("%s - Reset\n"), Send("@\r\n", CloseAndFail()),
            Return(1)}},
        {"Tare", {
            Ready(),
            Trace("%s - Set tare to 0\n"), Send("Z\r\n"),
            kReceive,
            If(Holds("Z A"), {Trace("%s - Success.\n\n"), Return(1)}, kCommandFails)}},
        {"TareSet", {Return(1)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            Ready(),
            If(Mode(0), {
                Trace("%s - Stable weight\n"), Send("S\r\n"), Pause(1000),
                kReceive,
                If(Holds("S S "), Then(kStoreValue, {Return(1)}), kCommandFails)}),
            If(Mode(2), {
                Trace("%s - Unstable weight\n"), Send("SI\r\n"),
                kReceive,
                If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                If(Holds("S D "), Then(kStoreValue, {Return(2)}), kCommandFails)}),
            If(Mode(1), {
                Trace("%s - Stable weight\n"), Send("S\r\n"),
                kReceiveOrGoOn,
                If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                If(Came(), {Trace("%s - Command fail!\n\n")}),
                Pause(1000),
                Passes(5, {
                    Clear({LeavePasses()}),
                    Trace("%s - Unstable weight\n"), Send("SI\r\n", {LeavePasses()}),
                    kReceiveOrGoOn,
                    If(Holds("S S "), Then(kStoreValue, {Return(1)})),
                    If(Holds("S D "), {ParseMettler(), AddToSum(), Pause(500), NextPass()}),
                    If(Came(), Then({Trace("%s - Command fail!\n\n")}, kStoreZero)),
                    If(Not(Seen()), kStoreZero),
                    Pause(500)}),
                If(Seen(), {Store(FifthOfSum()), kTraceWeight, Return(2)}, kStoreZero)}),
            Return(0)}},
    }};
}

// clang-format on

}  // namespace faults
