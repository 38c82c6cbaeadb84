#pragma once

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "Oracle.h"

/// The steps and conditions that the drivers' tables consist of.
namespace faults {

// How an operation ends or goes on.

inline Step Return(int result) {
    return [=](Run&) { return Flow{Flow::Done, result}; };
}
inline Step ReturnStatus() {
    return [](Run& run) { return Flow{Flow::Done, run.status}; };
}
inline Step LeavePasses() {
    return [](Run&) { return Flow{Flow::LeavePasses, 0}; };
}
inline Step NextPass() {
    return [](Run&) { return Flow{Flow::NextPass, 0}; };
}
inline Step Close() {
    return [](Run& run) {
        run.balance.Close();
        return Flow{};
    };
}

/// What a step does when it fails.
inline Steps Fail() {
    return {Return(0)};
}
inline Steps CloseAndFail() {
    return {Close(), Return(0)};
}
inline Steps GoOn() {
    return {};
}

// Conditions.

inline Test Mode(long mode) {
    return [=](const Run& run) { return run.call.mode == mode; };
}
/// `mark` is in the first `within` characters of the last answer; false when nothing came.
inline Test Holds(const std::string& mark, std::size_t within = 1024) {
    return [=](const Run& run) {
        return run.answer.substr(0, within).find(mark) != std::string::npos;
    };
}
inline Test Came() {
    return [](const Run& run) { return run.came; };
}
inline Test Seen() {
    return [](const Run& run) { return run.seen; };
}
inline Test StatusIs(int status) {
    return [=](const Run& run) { return run.status == status; };
}
/// The reading within the operation is closer to zero than `limit`.
inline Test ReadingBelow(double limit) {
    return [=](const Run& run) { return std::fabs(run.reading) < limit; };
}
inline Test Not(Test test) {
    return [=](const Run& run) { return !test(run); };
}
inline Test Either(Test one, Test other) {
    return [=](const Run& run) { return one(run) || other(run); };
}
inline Test Both(Test one, Test other) {
    return [=](const Run& run) { return one(run) && other(run); };
}

inline Test FlagA() {
    return [](const Run& run) { return run.balance.flagA != 0; };
}
inline Test FlagB() {
    return [](const Run& run) { return run.balance.flagB != 0; };
}
inline Test FlagC() {
    return [](const Run& run) { return run.balance.flagC != 0; };
}

// Numbers.

inline Number Value() {
    return [](const Run& run) { return run.value; };
}
/// What `*weight` holds.
inline Number Stored() {
    return [](const Run& run) { return *run.weight; };
}
inline Number Preset() {
    return [](const Run& run) { return run.call.preset; };
}
inline Number PresetPlusValue() {
    return [](const Run& run) { return run.call.preset + run.value; };
}
/// Always by five.
inline Number FifthOfSum() {
    return [](const Run& run) { return run.sum / 5.0; };
}
inline Number Constant(double number) {
    return [=](const Run&) { return number; };
}

// Control.

inline Steps Then(Steps steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

inline Step If(Test test, Steps then, Steps otherwise = {}) {
    return [=](Run& run) { return Carry(test(run) ? then : otherwise, run); };
}
inline Step Passes(int count, Steps steps) {
    return [=](Run& run) {
        for (int pass = 0; pass < count; ++pass) {
            const Flow flow = Carry(steps, run);
            if (flow.kind == Flow::Done) return flow;
            if (flow.kind == Flow::LeavePasses) break;
        }
        return Flow{};
    };
}
inline Step Do(std::function<void(Run&)> act) {
    return [=](Run& run) {
        act(run);
        return Flow{};
    };
}

// The line.

/// The common beginning: refuse a negative port number or a missing serial object; open, configure,
/// clear.
inline Step OpenAndClear() {
    return [](Run& run) { return run.balance.OpenAndClear() != 0 ? Flow{} : Flow{Flow::Done, 0}; };
}
inline Step NeedSerialObject(Steps otherwise = Fail()) {
    return [=](Run& run) { return run.balance.HasSerialObject() ? Flow{} : Carry(otherwise, run); };
}
inline Step Clear(Steps onFailure) {
    return [=](Run& run) { return run.balance.Clear() != 0 ? Flow{} : Carry(onFailure, run); };
}
inline Step Trace(const char* format) {
    return Do([=](Run& run) {
        run.balance.Trace(Formatted(1024, "a trace line", format,  // NOLINT
                                    run.balance.Driver().displayName.c_str()));
    });
}
inline Step Trace(const char* format, Number number) {
    return Do([=](Run& run) {
        run.balance.Trace(Formatted(1024, "a trace line", format,
                                    run.balance.Driver().displayName.c_str(), number(run)));
    });
}
inline Step TraceAsIs(const char* text) {
    return Do([=](Run& run) { run.balance.Trace(text); });
}
inline Step Send(const std::string& command, Steps onFailure = Fail()) {
    return
        [=](Run& run) { return run.balance.Send(command) != 0 ? Flow{} : Carry(onFailure, run); };
}
inline Step SendNumber(const char* format, Number number, const char* trace, std::size_t size,
                       const char* what) {
    return [=](Run& run) {
        const std::string command = Formatted(size, what, format, number(run));
        Carry({Trace(trace, number)}, run);
        return run.balance.Send(command) != 0 ? Flow{} : Flow{Flow::Done, 0};
    };
}
inline Step Pause(int ms) {
    return Do([=](Run& run) { run.balance.Pause(ms); });
}
inline Step Receive(long size, int attempts, const char* terminator, Steps onNothing) {
    return [=](Run& run) {
        run.came = run.balance.Receive(run.answer, size, attempts, terminator);
        return run.came ? Flow{} : Carry(onNothing, run);
    };
}

/// Appends lines, read in rounds of 64 characters, to the answer that the operation has so far: as
/// many characters as a line of the trace can show.
inline Step Collect(Steps onNothing) {
    return [=](Run& run) {
        run.came = run.balance.ReceiveAll(run.answer, 1005, 64, '\n');
        return run.came ? Flow{} : Carry(onNothing, run);
    };
}
inline Step EmptyAnswer() {
    return Do([](Run& run) { run.answer.clear(); });
}

// Calls of the object's own virtual operations.

inline Step Ready() {
    return [](Run& run) {
        if (!run.balance.HasSerialObject()) return Flow{Flow::Done, 0};
        return run.balance.Perform({"IsReady"}, nullptr, nullptr) != 0 ? Flow{}
                                                                       : Flow{Flow::Done, 0};
    };
}
/// A reading within another operation, without decimals; 0 ends the operation.
inline Step Read(long mode) {
    return [=](Run& run) {
        run.reading = 0.0;
        run.status = run.balance.Perform({"Weight", mode}, &run.reading, nullptr);
        return run.status != 0 ? Flow{} : Flow{Flow::Done, 0};
    };
}

// A text for the display.

inline Step RefuseTextOf(std::size_t least, std::size_t most) {
    return [=](Run& run) {
        const std::size_t length = run.call.text.size();
        return least <= length && length <= most ? Flow{Flow::Done, 0} : Flow{};
    };
}
inline Step EndProcessForTextOf(std::size_t least) {
    return Do([=](Run& run) {
        if (run.call.text.size() >= least) throw ProcessEnd{"a display text"};
    });
}

// Weights.

inline Step Store(Number number) {
    return Do([=](Run& run) { *run.weight = number(run); });
}
inline Step AddToSum() {
    return Do([](Run& run) {
        run.sum += run.value;
        run.seen = true;
    });
}

/// The number in a Mettler Toledo answer.
double MettlerNumber(const std::string& answer, int* decimals);

inline Step ParseMettler() {
    return Do([](Run& run) { run.value = MettlerNumber(run.answer, run.decimals); });
}
inline Step ParseMettlerWithoutDecimals() {
    return Do([](Run& run) { run.value = MettlerNumber(run.answer, nullptr); });
}

/// A driver's own parser: 0 not a weight, else the status; the pointers may be null.
using Parser = int (*)(const std::string& answer, double* weight, int* decimals);

inline Step ParseWith(Parser parser) {
    return Do([=](Run& run) { run.status = parser(run.answer, run.weight, run.decimals); });
}

}  // namespace faults
