// Mettler SB32001, MT-SICS levels 0 to 2.
//
//   > "@\r\n"             < "I4 A \"1126493049\"\r\n"  reset
//   > "S\r\n"             < "S S     100.00 g\r\n"     stable
//   > "SI\r\n"            < "S D     100.03 g\r\n"     dynamic, the pan still moves
//   > "T\r\n"             < "T S      10.00 g\r\n"     tared, with the load that was taken
//   > "TA 12.50 g\r\n"    < "TA A     12.50 g\r\n"     preset tare; "TA L" refused
//   > "D \"READY\"\r\n"   < "D A\r\n"                  text on the display
//   > "DW\r\n"            < "DW A\r\n"                 weight on the display

#include <wbalance/WbalanceMettlerSB32001.h>

#include <cstring>

#include "BoundedText.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Mettler SB";

constexpr char kReset[] = "@\r\n";
constexpr char kDisplayWeight[] = "DW\r\n";
constexpr char kTare[] = "T\r\n";
constexpr char kPresetTare[] = "TA %.2lf g\r\n";
constexpr char kStableWeight[] = "S\r\n";
constexpr char kImmediateWeight[] = "SI\r\n";
constexpr char kDisplayText[] = "D \"%s\"\r\n";

constexpr char kSerialNumber[] = "I4 ";
constexpr char kTared[] = "T S ";
constexpr char kPresetTaken[] = "TA A ";
constexpr char kStable[] = "S S ";
constexpr char kDynamic[] = "S D ";

constexpr int kPasses = 5;
constexpr std::size_t kLongestDisplayText = 57;

using Answer = exchange::Answer<33>;

int Receive(CSerialObject& serial, Answer& answer, long size = 33) {
    return answer.Receive(serial, 3, "\r\n", size);
}

int SendImmediateWeight(CSerialObject& serial) {
    // Spelled so: hosts know the line.
    return exchange::Send(serial, "%s - Ustable weight\n", kName, kImmediateWeight);
}

}  // namespace

WbalanceMettlerSB32001::WbalanceMettlerSB32001() {
    SetCommPort(0);
    SetCommConfig(2400, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
    modelFlagB = 0;
    modelFlagC = 1;
}

WbalanceMettlerSB32001::~WbalanceMettlerSB32001() = default;

int WbalanceMettlerSB32001::IsReady() {
    if (OpenAndClear() == 0) return 0;
    if (modelFlagC == 0) return 1;
    if (Reset() == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    modelFlagC = 0;
    return 1;
}

int WbalanceMettlerSB32001::Reset() {
    if (exchange::Send(*serialObject, "%s - Reset\n", kName, kReset) == 0) return 0;
    Sleep(500);
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    // The last of the 33 characters does not count here.
    if (!answer.Holds(kSerialNumber, 32)) return 0;
    // After the reset the balance weighs again; that it answers is enough.
    if (SendImmediateWeight(*serialObject) == 0) return 0;
    Sleep(500);
    return Receive(*serialObject, answer);
}

/// Brings back the weight when a text stands on the display.
int WbalanceMettlerSB32001::ShowWeight() {
    if (modelFlagB == 0) return 1;
    if (exchange::Send(*serialObject, "%s - Set weight mode\n", kName, kDisplayWeight) == 0)
        return 0;
    Sleep(500);
    Answer answer;
    if (Receive(*serialObject, answer) == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    modelFlagB = 0;
    return 1;
}

int WbalanceMettlerSB32001::Tare() {
    if (serialObject == nullptr || IsReady() == 0 || ShowWeight() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer, 32) == 0) return 0;
    if (!answer.Holds(kTared)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    exchange::Trace(*serialObject, "%s - Success.\n\n", kName);
    return 1;
}

int WbalanceMettlerSB32001::Weight(long mode, double* weight, int* decimals) {
    *weight = 0.0;
    if (serialObject == nullptr || IsReady() == 0 || ShowWeight() == 0) return 0;
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

int WbalanceMettlerSB32001::TareSet(double tare) {
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
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
    // Also when the balance refused or kept silent: hosts rely on it.
    return 1;
}

/// What the tare command that was just sent took off, 0.0 without a good answer.
double WbalanceMettlerSB32001::TakenTare() {
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0.0;
    if (!answer.Holds(kTared)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0.0;
    }
    const double taken = ParseWeight(answer.Text(), nullptr);
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n\n", kName, taken);
    return taken;
}

int WbalanceMettlerSB32001::StableWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Sleep(1000);
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    if (!answer.Holds(kStable)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), decimals), weight, 1);
}

int WbalanceMettlerSB32001::ImmediateWeight(double* weight, int* decimals) {
    if (SendImmediateWeight(*serialObject) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer) == 0) return 0;
    if (!answer.Holds(kStable) && !answer.Holds(kDynamic)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        return 0;
    }
    return Conclude(ParseWeight(answer.Text(), decimals), weight, answer.Holds(kStable) ? 1 : 2);
}

int WbalanceMettlerSB32001::StableOrAveragedWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer) != 0) {
        if (answer.Holds(kStable)) return Conclude(ParseWeight(answer.Text(), decimals), weight, 1);
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
    }
    Sleep(1000);
    return AveragedWeight(weight, decimals);
}

int WbalanceMettlerSB32001::AveragedWeight(double* weight, int* decimals) {
    double sum = 0.0;
    bool dynamicSeen = false;
    for (int pass = 0; pass < kPasses; ++pass) {
        if (serialObject->ClearErrorsAndBuffers() == 0) break;
        if (SendImmediateWeight(*serialObject) == 0) break;
        Answer answer;
        if (Receive(*serialObject, answer) == 0) {
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
int WbalanceMettlerSB32001::Conclude(double value, double* weight, int status) {
    *weight = value;
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n\n", kName, *weight);
    return status;
}

int WbalanceMettlerSB32001::DisplayMessage(char* text) {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (text == nullptr || std::strlen(text) > kLongestDisplayText) return 0;
    char command[64];
    bounded_text::Format(command, sizeof command, "a display command", kDisplayText, text);
    exchange::Trace(*serialObject, "%s - Display \"%s\"\n", kName, text);
    if (serialObject->SendCommand(command) == 0) return 0;
    Answer answer;
    if (Receive(*serialObject, answer, 32) == 0) return 0;
    modelFlagB = 1;
    return 1;
}
