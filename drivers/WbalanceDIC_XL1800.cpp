// Denver Instrument Company XL-1800.
//
// The commands have no line end. The weight comes as the signed reading that the Setra EL-2000S
// has, too (SignedReading.h), up to the first silence; the tare is not answered:
//   > "?1"   < "1+    12.34 g\r\n"   stable
//            < "U-     0.50 g\r\n"   unstable
//   > "T"    tares

#include <wbalance/WbalanceDIC_XL1800.h>

#include <cmath>

#include "Exchange.h"
#include "SignedReading.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Denver Instrument Company XL-1800";

constexpr char kWeight[] = "?1";
constexpr char kTare[] = "T";

constexpr int kTareMs = 2000;
constexpr double kTareLimit = 0.1;

}  // namespace

WbalanceDIC_XL1800::WbalanceDIC_XL1800() {
    SetCommPort(0);
    SetCommConfig(2400, ParityNone, 8, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceDIC_XL1800::~WbalanceDIC_XL1800() = default;

int WbalanceDIC_XL1800::ParseWeight(char* answer, double* weight, int* /*decimals*/) {
    return signed_reading::Parse(answer, weight);
}

int WbalanceDIC_XL1800::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double scratch = 0.0;
    return Weight(1, &scratch, nullptr);
}

// The opening is left to an earlier IsReady(), unlike the EL-2000S's.
int WbalanceDIC_XL1800::Tare() {
    if (serialObject == nullptr) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Sleep(kTareMs);
    double rest = 0.0;
    if (Weight(0, &rest, nullptr) == 0) return 0;
    return std::fabs(rest) < kTareLimit ? 1 : 0;
}

int WbalanceDIC_XL1800::Weight(long mode, double* weight, int* /*decimals*/) {
    if (serialObject == nullptr || weight == nullptr) return 0;
    return signed_reading::Read(*serialObject, kName, kWeight, mode, weight);
}

int WbalanceDIC_XL1800::TareSet(double /*preset*/) {
    return 0;
}
