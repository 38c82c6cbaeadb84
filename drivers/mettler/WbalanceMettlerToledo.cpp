// Generic Mettler Toledo, MT-SICS levels 0 and 1.
//
// The balance answers a weight command with an identifier, a status and the value:
//   > "S\r\n"    < "S S     100.00 g\r\n"   stable
//   > "SI\r\n"   < "S D     100.03 g\r\n"   dynamic, the pan still moves
//   > "Z\r\n"    < "Z A\r\n"                zeroed
//   > "@\r\n"    < "I4 A \"1126493049\"\r\n"  reset; the answer is left in the line

#include <wbalance/WbalanceMettlerToledo.h>

#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Generic Mettler Toledo";

constexpr char kReset[] = "@\r\n";
constexpr char kZero[] = "Z\r\n";
constexpr char kStableWeight[] = "S\r\n";
constexpr char kImmediateWeight[] = "SI\r\n";

constexpr char kZeroed[] = "Z A";
constexpr char kStable[] = "S S ";
constexpr char kDynamic[] = "S D ";

constexpr int kAttempts = 3;
constexpr int kPasses = 5;

// The answers come without a terminator being asked for, so that a read uses all its attempts.
constexpr const char* kNoTerminator = nullptr;

using Answer = exchange::Answer<33>;

}  // namespace

WbalanceMettlerToledo::WbalanceMettlerToledo() {
    SetCommPort(0);
    SetCommConfig(2400, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceMettlerToledo::~WbalanceMettlerToledo() = default;

int WbalanceMettlerToledo::IsReady() {
    if (OpenAndClear() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Reset\n", kName, kReset) == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    return 1;
}

int WbalanceMettlerToledo::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Set tare to 0\n", kName, kZero) == 0) return 0;
    Answer answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) return 0;
    // The reset's own answer may stand ahead of it.
    if (!answer.Holds(kZeroed)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    exchange::Trace(*serialObject, "%s - Success.\n\n", kName);
    return 1;
}

int WbalanceMettlerToledo::Weight(long mode, double* weight, int* decimals) {
    *weight = 0.0;
    if (serialObject == nullptr || IsReady() == 0) return 0;
    switch (mode) {
        case 0:
            return StableWeight(weight, decimals);
        case 1:
            return StableOrAveragedWeight(weight, decimals);
        case 2:
            return ImmediateWeight(weight, decimals);
        default:
            return 0;
    }
}

int WbalanceMettlerToledo::StableWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Sleep(1000);
    Answer answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) return 0;
    if (!answer.Holds(kStable)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), decimals), weight, 1);
}

int WbalanceMettlerToledo::ImmediateWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Unstable weight\n", kName, kImmediateWeight) == 0)
        return 0;
    Answer answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) return 0;
    if (!answer.Holds(kStable) && !answer.Holds(kDynamic)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), decimals), weight, answer.Holds(kStable) ? 1 : 2);
}

int WbalanceMettlerToledo::StableOrAveragedWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Answer answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) != 0) {
        if (answer.Holds(kStable)) return Conclude(ParseWeight(answer.Text(), decimals), weight, 1);
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
    }
    Sleep(1000);
    return AveragedWeight(weight, decimals);
}

int WbalanceMettlerToledo::AveragedWeight(double* weight, int* decimals) {
    double sum = 0.0;
    bool dynamicSeen = false;
    for (int pass = 0; pass < kPasses; ++pass) {
        if (serialObject->ClearErrorsAndBuffers() == 0) break;
        if (exchange::Send(*serialObject, "%s - Unstable weight\n", kName, kImmediateWeight) == 0)
            break;
        Answer answer;
        if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) {
            if (!dynamicSeen) return Conclude(0.0, weight, 0);
        } else if (answer.Holds(kStable)) {
            return Conclude(ParseWeight(answer.Text(), decimals), weight, 1);
        } else if (answer.Holds(kDynamic)) {
            sum += ParseWeight(answer.Text(), decimals);
            dynamicSeen = true;
        } else {
            exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
            return Conclude(0.0, weight, 0);
        }
        Sleep(500);
    }
    // Always by 5, however many passes were answered: hosts know silent passes as zeros in the
    // average.
    return dynamicSeen ? Conclude(sum / 5.0, weight, 2) : Conclude(0.0, weight, 0);
}

/// Stores and traces the weight, also the 0.0 of a failure.
int WbalanceMettlerToledo::Conclude(double value, double* weight, int status) {
    *weight = value;
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n\n", kName, *weight);
    return status;
}
