// Ohaus Scout Pro and Explorer: printed lines that hold the weight and its unit.
//
//   > "P\r\n"      < "       12.34 g     \r\n"    print at once
//                  < "       12.30 g    ?\r\n"    the pan still moves
//   > "SP\r\n"     the same once stable; a Scout Pro may not know it and stay silent
//   > "T\r\n"      tare; no answer
//   > ESC "R\r\n"  back to the factory settings; no answer
//   > "0A\r\n"     automatic printing off; no answer

#include <wbalance/WbalanceOHAUS_SPU602.h>

#include <cmath>
#include <cstring>

#include "CLocale.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Ohaus Scout Pro - Explorer";

constexpr char kStablePrint[] = "SP\r\n";
constexpr char kImmediatePrint[] = "P\r\n";
constexpr char kTare[] = "T\r\n";
constexpr char kFactorySettings[] = "\x1bR\r\n";
constexpr char kAutoPrintOff[] = "0A\r\n";

constexpr char kUnit = 'g';
constexpr char kUnstable = '?';

constexpr int kAttempts = 3;
constexpr const char* kNoTerminator = nullptr;

// What is reported as decimals, whatever their number: hosts rely on it.
constexpr int kDecimalsOfWholeNumber = 2;
constexpr int kDecimalsWithPoint = 7;

int WeightFails() {
    exchange::Trace("Weight procedure failed!");
    return 0;
}

int RestoreFails() {
    exchange::Trace("Restore factory settings command failed!");
    return 0;
}

}  // namespace

WbalanceOHAUS_SPU602::WbalanceOHAUS_SPU602() {
    SetCommPort(0);
    SetCommConfig(2400, ParityNone, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceOHAUS_SPU602::~WbalanceOHAUS_SPU602() = default;

int WbalanceOHAUS_SPU602::ParseWeight(char* answer, double* weight, int* decimals, bool* unstable) {
    if (answer == nullptr || *answer == '\0') return 0;
    if (decimals != nullptr) *decimals = kDecimalsOfWholeNumber;
    if (unstable != nullptr) *unstable = std::strchr(answer, kUnstable) != nullptr;
    *weight = 0.0;
    if (std::strchr(answer, kUnit) == nullptr) return 0;
    char* rest = nullptr;
    const char* number = strtok_r(answer, " g", &rest);
    if (number == nullptr) return 0;
    if (decimals != nullptr && std::strchr(number, '.') != nullptr) *decimals = kDecimalsWithPoint;
    *weight = c_locale::NumberIn(number);
    return 1;
}

int WbalanceOHAUS_SPU602::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double weight = 0.0;
    return Weight(1, &weight, nullptr);
}

int WbalanceOHAUS_SPU602::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    serialObject->ClearErrorsAndBuffers();
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Sleep(2000);
    serialObject->ClearErrorsAndBuffers();
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    return std::fabs(weight) < 0.1 ? 1 : 0;
}

int WbalanceOHAUS_SPU602::Weight(long mode, double* weight, int* decimals) {
    *weight = 0.0;
    const bool stableOnly = mode == 0;
    bool unstable = true;
    if (serialObject == nullptr ||
        ReadLine(stableOnly ? kStablePrint : kImmediatePrint, weight, decimals, &unstable) == 0)
        return WeightFails();
    exchange::Trace(*serialObject, "%s - weight = %.2lf gr.\n\n", kName, *weight);
    if (!unstable) return 1;
    exchange::Trace("Unstable weight!");
    // The weight that is refused stays in *weight: hosts rely on it.
    return stableOnly ? WeightFails() : 1;
}

int WbalanceOHAUS_SPU602::ReadLine(const char* command, double* weight, int* decimals,
                                   bool* unstable) {
    serialObject->ClearErrorsAndBuffers();
    const int sent = exchange::Send(*serialObject, "%s - Weight\n", kName, command);
    // Read also after a send that failed: what the balance prints unasked is taken off the line.
    Sleep(500);
    exchange::Answer<65> answer;
    const int received = answer.Receive(*serialObject, kAttempts, kNoTerminator);
    if (sent == 0 || received == 0) return 0;
    return ParseWeight(answer.Text(), weight, decimals, unstable);
}

int WbalanceOHAUS_SPU602::TareSet(double /*preset*/) {
    return 0;
}

int WbalanceOHAUS_SPU602::RestoreFactorySettings() {
    if (serialObject == nullptr) return RestoreFails();
    const int restored =
        exchange::Send(*serialObject, "%s - Restore factory settings\n", kName, kFactorySettings);
    exchange::Send(*serialObject, kAutoPrintOff);
    return restored != 0 ? 1 : RestoreFails();
}
