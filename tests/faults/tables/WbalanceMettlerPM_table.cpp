#include "Steps.h"
#include "Tables.h"

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
    // The signs are ignored: the magnitudes are compared.
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

}  // namespace

template <>
Description TableOf<WbalanceMettlerPM>() {
    return {
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
                    // The weight is traced before it is stored.
                    If(Holds("S "), {ParseMettler(), kTraceStored, Store(Value()), Return(1)}),
                    If(Holds("SD "), {ParseMettler(), AddToSum(), Pause(500), NextPass()}),
                    Store(Constant(0.0)), Return(0)}),
                If(Seen(), {Store(FifthOfSum()), Return(2)}, kStoreZero)}),
            Return(0)}},
    },
    1, 0, 0, 0};
}

// clang-format on

}  // namespace faults
