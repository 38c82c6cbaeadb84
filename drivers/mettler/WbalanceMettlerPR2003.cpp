// Mettler PR2003, MT-SICS levels 0 to 2.
//
//   > "@\r\n"             < "I4 A \"1126493049\"\r\n"  reset
//   > "S\r\n"             < "S S     100.00 g\r\n"     stable
//   > "SI\r\n"            < "S D     100.03 g\r\n"     dynamic, the pan still moves
//   > "T\r\n"             < "T S      10.00 g\r\n"     tared, with the load that was taken
//   > "TA 12.50 g\r\n"    < "TA A     12.50 g\r\n"     preset tare; "TA L" refused
//   > "D \"READY\"\r\n"   < "D A\r\n"                  text on the display
//   > "DW\r\n"            < "DW A\r\n"                 weight on the display
//   > "PWR 1\r\n"         < "PWR A\r\n"                on; "PWR 0" off

#include <wbalance/WbalanceMettlerPR2003.h>

#include <cstring>

#include "BoundedText.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Mettler PR";

constexpr char kReset[] = "@\r\n";
constexpr char kDisplayWeight[] = "DW\r\n";
constexpr char kTare[] = "T\r\n";
constexpr char kPresetTare[] = "TA %.2lf g\r\n";
constexpr char kStableWeight[] = "S\r\n";
constexpr char kImmediateWeight[] = "SI\r\n";
constexpr char kSwitchOn[] = "PWR 1\r\n";
constexpr char kSwitchOff[] = "PWR 0\r\n";
constexpr char kDisplayText[] = "D \"%s\"\r\n";

constexpr char kSerialNumber[] = "I4 ";
constexpr char kTared[] = "T S ";
constexpr char kPresetTaken[] = "TA A ";
constexpr char kStable[] = "S S ";
constexpr char kDynamic[] = "S D ";

constexpr int kPasses = 5;
constexpr std::size_t kDisplayCommandSize = 64;
constexpr std::size_t kLongestDisplayText = 57;

using Answer = exchange::Answer<33>;

int Receive(CSerialObject& serial, Answer& answer) {
    return answer.Receive(serial, 3, "\r\n");
}

int SendDisplayWeight(CSerialObject& serial) {
    return exchange::Send(serial, "%s - Set weight mode\n", kName, kDisplayWeight);
}

// For the commands that are confirmed by any answer.
int Answered(CSerialObject& serial) {
    Answer answer;
    return Receive(serial, answer);
}

}  // namespace

WbalanceMettlerPR2003::WbalanceMettlerPR2003() {
    SetCommPort(0);
    SetCommConfig(2400, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
    modelFlagB = 0;
    modelFlagC = 1;
}

WbalanceMettlerPR2003::~WbalanceMettlerPR2003() = default;

int WbalanceMettlerPR2003::IsReady() {
    if (OpenAndClear() == 0) return 0;
    if (modelFlagC == 0) return 1;
    if (Reset() == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    modelFlagC = 0;
    return 1;
}

int WbalanceMettlerPR2003::Reset() {
    if (exchange::Send(*serialObject, "%s - Reset\n", kName, kReset) == 0) return 0;
    Sleep(500);
    Answer answer;
    // The last of the 33 characters does not count here.
    return Receive(*serialObject, answer) != 0 && answer.Holds(kSerialNumber, 32) ? 1 : 0;
}

/// Brings back the weight when a text stands on the display.
int WbalanceMettlerPR2003::ShowWeight() {
    if (modelFlagB == 0) return 1;
    if (SendDisplayWeight(*serialObject) == 0) return 0;
    Sleep(500);
    if (Answered(*serialObject) == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    modelFlagB = 0;
    return 1;
}

int WbalanceMettlerPR2003::Tare() {
    if (serialObject == nullptr || IsReady() == 0 || ShowWeight() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare", kName, kTare) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    if (!answer.Holds(kTared)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    exchange::Trace(*serialObject, "%s - Success\n", kName);
    return 1;
}

int WbalanceMettlerPR2003::Weight(long mode, double* weight, int* /*decimals*/) {
    *weight = 0.0;
    if (serialObject == nullptr || IsReady() == 0 || ShowWeight() == 0) return 0;
    switch (mode) {
        case 0:
            return StableWeight(weight);
        case 1:
            return StableOrAveragedWeight(weight);
        case 2:
            return ImmediateWeight(weight);
        default:
            return 0;
    }
}

int WbalanceMettlerPR2003::TareSet(double tare) {
    if (serialObject == nullptr || IsReady() == 0 || ShowWeight() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    // A preset tare replaces the one that the balance has just taken.
    const double preset = tare + TakenTare();
    char command[32];
    bounded_text::Format(command, sizeof command, "a preset tare", kPresetTare, preset);
    exchange::Trace(*serialObject, "%s - Set tare to %.2lf\n", kName, preset);
    if (serialObject->SendCommand(command) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer) != 0 && !answer.Holds(kPresetTaken))
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
    // Also when the balance refused or kept silent: hosts rely on it.
    exchange::Trace(*serialObject, "%s - Success.\n", kName);
    return 1;
}

/// What the tare command that was just sent took off, 0.0 without a good answer.
double WbalanceMettlerPR2003::TakenTare() {
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0.0;
    if (!answer.Holds(kTared)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
        return 0.0;
    }
    const double taken = ParseWeight(answer.Text(), nullptr);
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n", kName, taken);
    return taken;
}

int WbalanceMettlerPR2003::StableWeight(double* weight) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Sleep(1000);
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    if (!answer.Holds(kStable)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), nullptr), weight, 1);
}

int WbalanceMettlerPR2003::ImmediateWeight(double* weight) {
    if (exchange::Send(*serialObject, "%s - Unstable weight\n", kName, kImmediateWeight) == 0)
        return 0;
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    if (!answer.Holds(kStable) && !answer.Holds(kDynamic)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), nullptr), weight, answer.Holds(kStable) ? 1 : 2);
}

int WbalanceMettlerPR2003::StableOrAveragedWeight(double* weight) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer) != 0) {
        if (answer.Holds(kStable)) return Conclude(ParseWeight(answer.Text(), nullptr), weight, 1);
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
    }
    Sleep(1000);
    const int status = AveragedWeight(weight);
    if (status == 0) *weight = 0.0;
    return status;
}

int WbalanceMettlerPR2003::AveragedWeight(double* weight) {
    double sum = 0.0;
    bool dynamicSeen = false;
    for (int pass = 0; pass < kPasses; ++pass) {
        if (serialObject->ClearErrorsAndBuffers() == 0) break;
        if (exchange::Send(*serialObject, "%s - Unstable weight\n", kName, kImmediateWeight) == 0)
            break;
        Sleep(500);
        Answer answer;
        if (Receive(*serialObject, answer) == 0) {
            if (!dynamicSeen) return 0;
        } else if (answer.Holds(kStable)) {
            // Traced before it is stored: hosts know this line with 0.00.
            exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n", kName, *weight);
            *weight = ParseWeight(answer.Text(), nullptr);
            return 1;
        } else if (answer.Holds(kDynamic)) {
            sum += ParseWeight(answer.Text(), nullptr);
            dynamicSeen = true;
        } else {
            exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
            return 0;
        }
        Sleep(500);
    }
    if (!dynamicSeen) return 0;
    // Always by 5, however many passes were answered: hosts know silent passes as zeros in the
    // average.
    *weight = sum / 5.0;
    return 2;
}

/// Stores and traces the weight.
int WbalanceMettlerPR2003::Conclude(double value, double* weight, int status) {
    *weight = value;
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n", kName, *weight);
    return status;
}

int WbalanceMettlerPR2003::TurnItOn() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Switch on\n", kName, kSwitchOn) == 0) return 0;
    Sleep(1000);
    if (Answered(*serialObject) == 0) return 0;
    if (SendDisplayWeight(*serialObject) == 0) return 0;
    Sleep(500);
    if (Answered(*serialObject) == 0) return 0;
    modelFlagB = 0;
    return 1;
}

int WbalanceMettlerPR2003::TurnItOff() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (SendDisplayWeight(*serialObject) == 0) return 0;
    Sleep(500);
    if (Answered(*serialObject) == 0) return 0;
    modelFlagB = 0;
    // "on", as hosts know this line of the trace.
    if (exchange::Send(*serialObject, "%s - Switch on\n", kName, kSwitchOff) == 0) return 0;
    Sleep(1000);
    return Answered(*serialObject);
}

int WbalanceMettlerPR2003::DisplayMessage(char* text) {
    if (serialObject == nullptr || IsReady() == 0 || text == nullptr) return 0;
    // Would fit its own buffer, but not the command that it becomes a part of.
    const std::size_t length = std::strlen(text);
    if (length > kLongestDisplayText && length < kDisplayCommandSize) return 0;
    char shown[kDisplayCommandSize];
    bounded_text::Copy(shown, text, "a display text");
    char command[kDisplayCommandSize];
    bounded_text::Format(command, sizeof command, "a display command", kDisplayText, shown);
    exchange::Trace(*serialObject, "%s - Display \"%s\"\n", kName, shown);
    if (serialObject->SendCommand(command) == 0) return 0;
    if (Answered(*serialObject) == 0) return 0;
    modelFlagB = 1;
    return 1;
}
