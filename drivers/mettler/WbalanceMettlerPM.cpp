// Mettler PM, in the standard PM protocol or in MT-SICS.
//
//              standard PM                         MT-SICS
//   > "@\r\n"  < "ES\r\n"                          < "I4 A \"0123456\"\r\n"   tells them apart
//   > "S\r\n"  < "S      100.00 g\r\n"             < "S S     100.00 g\r\n"   stable
//   > "SI\r\n" < "SD     100.03 g\r\n"             < "S D     100.03 g\r\n"   dynamic
//   > "T\r\n"  no answer                           < "T S       2.50 g\r\n"   tared
//   preset     > "B 5.00\r\n"  no answer is read   > "TA 7.50 g\r\n"  < "TA A       7.50 g\r\n"

#include <wbalance/WbalanceMettlerPM.h>

#include <cmath>

#include "BoundedText.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Mettler PM";

constexpr char kReset[] = "@\r\n";
constexpr char kStableWeight[] = "S\r\n";
constexpr char kImmediateWeight[] = "SI\r\n";
constexpr char kTare[] = "T\r\n";
constexpr char kPresetStandardPM[] = "B %.2lf\r\n";
constexpr char kPresetSics[] = "TA %.2lf g\r\n";

constexpr char kSicsReset[] = "I4 ";
// MT-SICS answers begin with "S " whatever they say, and all of them count as stable: hosts rely on
// it.
constexpr char kStable[] = "S ";
constexpr char kDynamic[] = "SD ";
constexpr char kTared[] = "T S ";
constexpr char kPresetDone[] = "TA A ";

constexpr int kStandardPM = 0;
constexpr int kSics = 1;

constexpr int kAtOnce = 0;
constexpr int kPasses = 5;

/// Every answer of these balances is one line.
class Answer : public exchange::Answer<33> {
 public:
    int Receive(CSerialObject& serial) { return exchange::Answer<33>::Receive(serial, 3, "\r\n"); }
};

/// Traces and sends a command and reads its answer, after a pause where one is needed.
int Ask(CSerialObject& serial, const char* trace, const char* command, int pauseMs,
        Answer& answer) {
    if (exchange::Send(serial, trace, kName, command) == 0) return 0;
    if (pauseMs != kAtOnce) Sleep(pauseMs);
    return answer.Receive(serial);
}

}  // namespace

WbalanceMettlerPM::WbalanceMettlerPM() {
    SetCommPort(0);
    SetCommConfig(600, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
    protocolCode = kStandardPM;
    modelFlagA = 1;  // the protocol is still to be found out
}

WbalanceMettlerPM::~WbalanceMettlerPM() = default;

int WbalanceMettlerPM::IsReady() {
    if (OpenAndClear() == 0) return 0;
    Answer answer;
    if ((modelFlagA != 0 && DetectProtocol() == 0) ||
        Ask(*serialObject, "%s - Unstable weight\n", kImmediateWeight, 500, answer) == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    modelFlagA = 0;
    return 1;
}

int WbalanceMettlerPM::DetectProtocol() {
    Answer answer;
    if (Ask(*serialObject, "%s - Reset\n", kReset, 500, answer) == 0) return 0;
    if (Ask(*serialObject, "%s - Unstable weight\n", kImmediateWeight, kAtOnce, answer) == 0)
        return 0;
    if (Ask(*serialObject, "%s - Reset\n", kReset, 500, answer) == 0) return 0;
    protocolCode = answer.Holds(kSicsReset, 32) ? kSics : kStandardPM;
    exchange::Trace(*serialObject, "%s - %s\n\n", kName,
                    protocolCode == kSics ? "PM MT-SICS protocol" : "Standard PM protocol");
    return 1;
}

int WbalanceMettlerPM::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Sleep(500);
    Answer().Receive(*serialObject);  // a balance that tares may answer or not
    Sleep(2000);
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    return std::fabs(weight) < 0.1 ? 1 : 0;
}

int WbalanceMettlerPM::Weight(long mode, double* weight, int* decimals) {
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

int WbalanceMettlerPM::StableWeight(double* weight, int* decimals) {
    Answer answer;
    if (Ask(*serialObject, "%s - Stable weight\n", kStableWeight, 1000, answer) == 0) return 0;
    if (!answer.Holds(kStable)) return 0;
    *weight = ParseWeight(answer.Text(), decimals);
    exchange::Trace(*serialObject, "%s - weight = %.2lf\n\n", kName, *weight);
    return 1;
}

int WbalanceMettlerPM::ImmediateWeight(double* weight, int* decimals) {
    Answer answer;
    if (Ask(*serialObject, "%s - Ustable weight\n", kImmediateWeight, kAtOnce, answer) == 0)
        return 0;
    const bool stable = answer.Holds(kStable);
    if (!stable && !answer.Holds(kDynamic)) return 0;
    *weight = ParseWeight(answer.Text(), decimals);
    exchange::Trace(*serialObject, "%s - %s weight = %.2lf\n\n", kName,
                    stable ? "Stable" : "Unstable", *weight);
    return stable ? 1 : 2;
}

int WbalanceMettlerPM::StableOrAveragedWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    Answer answer;
    if (answer.Receive(*serialObject) != 0 && answer.Holds(kStable)) {
        *weight = ParseWeight(answer.Text(), decimals);
        exchange::Trace(*serialObject, "%s - weight = %.2lf\n\n", kName, *weight);
        return 1;
    }
    Sleep(1000);
    const int status = AveragedWeight(weight, decimals);
    if (status == 0) *weight = 0.0;
    return status;
}

int WbalanceMettlerPM::AveragedWeight(double* weight, int* decimals) {
    double sum = 0.0;
    bool dynamicSeen = false;
    for (int pass = 0; pass < kPasses; ++pass) {
        if (serialObject->ClearErrorsAndBuffers() == 0) break;
        if (exchange::Send(*serialObject, "%s - Ustable weight\n", kName, kImmediateWeight) == 0)
            break;
        Answer answer;
        if (answer.Receive(*serialObject) == 0) {
            if (!dynamicSeen) return 0;
        } else if (answer.Holds(kStable)) {
            const double stable = ParseWeight(answer.Text(), decimals);
            // Traced ahead of the store, so as 0.00: hosts know the line so.
            exchange::Trace(*serialObject, "%s - weight = %.2lf\n\n", kName, *weight);
            *weight = stable;
            return 1;
        } else if (answer.Holds(kDynamic)) {
            sum += ParseWeight(answer.Text(), decimals);
            dynamicSeen = true;
        } else {
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

int WbalanceMettlerPM::TareSet(double preset) {
    return protocolCode == kSics ? PresetInSics(preset) : PresetInStandardPM(preset);
}

int WbalanceMettlerPM::PresetInStandardPM(double preset) {
    if (serialObject == nullptr || Tare() == 0 || IsReady() == 0) return 0;
    if (SendPreset(kPresetStandardPM, preset) == 0) return 0;
    Sleep(2000);
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    // The difference of the magnitudes, without a lower limit: hosts rely on it.
    return std::fabs(weight) - std::fabs(preset) < 0.1 ? 1 : 0;
}

int WbalanceMettlerPM::PresetInSics(double preset) {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    Answer answer;
    if (Ask(*serialObject, "%s - Tare\n", kTare, kAtOnce, answer) == 0) return 0;
    double current = 0.0;
    if (answer.Holds(kTared)) {
        current = ParseWeight(answer.Text(), nullptr);
        exchange::Trace(*serialObject, "%s - weight = %.2lf\n\n", kName, current);
    } else {
        exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
    }
    if (SendPreset(kPresetSics, preset + current) == 0) return 0;
    // A preset that the balance does not confirm counts as set: hosts rely on it.
    if (answer.Receive(*serialObject) != 0 && !answer.Holds(kPresetDone)) {
        exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
    }
    return 1;
}

int WbalanceMettlerPM::SendPreset(const char* commandFormat, double preset) {
    char command[32];
    bounded_text::Format(command, sizeof command, "a preset-tare command", commandFormat, preset);
    exchange::Trace(*serialObject, "%s - Set tare at %.2lf\n", kName, preset);
    return serialObject->SendCommand(command);
}
