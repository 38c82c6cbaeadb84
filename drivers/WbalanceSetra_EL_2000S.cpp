// Setra EL-2000S.
//
// The commands have no line end. The weight comes as the signed reading that the Denver Instrument
// XL-1800 has, too (SignedReading.h), up to the first silence; the tare is not answered:
//   > "#"   < "1+    12.34 g\r\n"   stable
//           < "U-     0.50 g\r\n"   unstable
//   > "T"   tares

#include <wbalance/WbalanceSetra_EL_2000S.h>

#include <cmath>

#include "Exchange.h"
#include "SignedReading.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Setra EL-2000S";

constexpr char kWeight[] = "#";
constexpr char kTare[] = "T";

constexpr int kTareMs = 2000;
constexpr double kTareLimit = 0.1;

}  // namespace

WbalanceSetra_EL_2000S::WbalanceSetra_EL_2000S() {
    SetCommPort(0);
    SetCommConfig(2400, ParityNone, 8, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceSetra_EL_2000S::~WbalanceSetra_EL_2000S() = default;

int WbalanceSetra_EL_2000S::ParseWeight(char* answer, double* weight, int* /*decimals*/) {
    return signed_reading::Parse(answer, weight);
}

int WbalanceSetra_EL_2000S::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double scratch = 0.0;
    return Weight(1, &scratch, nullptr);
}

// A trial weight comes first, unlike the XL-1800's: a balance that gives none is not tared.
int WbalanceSetra_EL_2000S::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Sleep(kTareMs);
    double rest = 0.0;
    if (Weight(0, &rest, nullptr) == 0) return 0;
    return std::fabs(rest) < kTareLimit ? 1 : 0;
}

int WbalanceSetra_EL_2000S::Weight(long mode, double* weight, int* /*decimals*/) {
    if (serialObject == nullptr || weight == nullptr) return 0;
    return signed_reading::Read(*serialObject, kName, kWeight, mode, weight);
}

int WbalanceSetra_EL_2000S::TareSet(double /*preset*/) {
    return 0;
}
