// Gibertini, CRYSTAL protocol.
//
// A command is a letter and a carriage return. Every accepted one is answered with a record of 19
// characters: value, unit, two flags and the line end:
//   > "B\r"   < "    123.45 g   DS\r\n"   valid, stable
//             < "    123.48 g   DI\r\n"   valid, unstable
//             < "      0.00 g   OE\r\n"   over-range, in error
//   > "T\r"   < "      0.00 g   TI\r\n"   taring

#include <wbalance/WbalanceGibertini.h>

#include <cstring>
#include <string>

#include "CLocale.h"
#include "Exchange.h"

namespace {

constexpr char kName[] = "Gibertini";

constexpr char kTare[] = "T\r";
constexpr char kWeight[] = "B\r";

constexpr std::size_t kRecordLength = 19;
constexpr std::size_t kValueLength = 10;

// Hosts know this count, whatever the record's decimals are.
constexpr int kDecimals = 2;

constexpr unsigned int kWeightWaitMs = 20000;
constexpr int kWeightPauseMs = 200;

// The two flags of a complete record: 1 stable, 2 unstable, 0 no weight.
int RecordStatus(const char* record) {
    if (record[15] != 'D' && record[15] != 'T') return 0;
    switch (record[16]) {
        case 'S':
            return 1;
        case 'I':
            return 2;
        default:
            return 0;
    }
}

// Whether `text` is made of complete and valid records, none included.
bool AllRecordsAreValid(const char* text, std::size_t length) {
    if (length % kRecordLength != 0) return false;
    for (const char* record = text; record != text + length; record += kRecordLength) {
        if (RecordStatus(record) == 0) return false;
    }
    return true;
}

}  // namespace

WbalanceGibertini::WbalanceGibertini() {
    // A parity outside the codes, so that the port keeps its own.
    constexpr int keepParity = 1024;
    SetCommPort(0);
    SetCommConfig(9600, keepParity, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceGibertini::~WbalanceGibertini() = default;

int WbalanceGibertini::ParseWeight(char* answer, double* weight, int* decimals) {
    const std::size_t length = answer == nullptr ? 0 : std::strlen(answer);
    if (length < kRecordLength) return 0;
    if (decimals != nullptr) *decimals = kDecimals;
    if (!AllRecordsAreValid(answer + kRecordLength, length - kRecordLength)) return 0;
    // Stored before the record's own flags are looked at: hosts see the value of a refused one.
    const std::string value(answer, kValueLength);
    if (weight != nullptr) *weight = c_locale::NumberIn(value.c_str());
    return RecordStatus(answer);
}

int WbalanceGibertini::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double scratch = 0.0;
    return Weight(1, &scratch, nullptr);
}

int WbalanceGibertini::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    exchange::CollectedAnswer answer;
    if (answer.ReceiveMore(*serialObject) == 0) return 0;
    return ParseWeight(answer.Text(), nullptr, nullptr) != 0 ? 1 : 0;
}

int WbalanceGibertini::Weight(long /*mode*/, double* weight, int* decimals) {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Weight\n", kName, kWeight) == 0) return 0;
    exchange::CollectedAnswer answer;
    const bool read = exchange::TryFor(kWeightWaitMs, kWeightPauseMs, [&] {
        answer.ReceiveMore(*serialObject);
        return ParseWeight(answer.Text(), weight, decimals) > 0;
    });
    if (!read) {
        exchange::Trace(*serialObject, "Weight procedure failed!");
        return 0;
    }
    exchange::Trace(*serialObject, "%s - weight = %.2lf gr.\n\n", kName, *weight);
    return 1;
}

int WbalanceGibertini::TareSet(double /*preset*/) {
    return 0;
}
