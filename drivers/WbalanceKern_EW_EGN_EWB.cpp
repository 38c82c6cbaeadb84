// Kern EW, EG-N and EWB.
//
// A command is two characters and a line end. The balance acknowledges it with "A00" (a wrong one
// is answered "E01"), and the weight record follows on a line of its own:
//   > "T \r\n"   < "A00\r\n"                    tared
//   > "O9\r\n"   < "A00\r\n+  12.50 G S\r\n"    one record after stabilization
//   > "O8\r\n"   < "A00\r\n+  12.53 G U\r\n"    one record at once; "U" while not stable
//   > "O0\r\n"   < "A00\r\n"                    stop
//
// A command stays in force until the next one, so a record of "O9" may come seconds later.

#include <wbalance/WbalanceKern_EW_EGN_EWB.h>

#include <cstring>
#include <string>
#include <string_view>

#include "CLocale.h"
#include "Exchange.h"

namespace {

constexpr char kName[] = "Kern EW/EG-N/EWB";

constexpr char kTare[] = "T \r\n";
constexpr char kWeightWhenStable[] = "O9\r\n";
constexpr char kWeightAtOnce[] = "O8\r\n";
constexpr char kStop[] = "O0\r\n";

constexpr char kAcknowledged[] = "A00";
constexpr std::size_t kAcknowledgementLine = 5;  // "A00\r\n"
constexpr std::size_t kRecordLength = 12;

// Hosts know this count, whatever the record's decimals are.
constexpr int kDecimals = 7;

constexpr unsigned int kStableWaitMs = 5000;
constexpr int kStablePauseMs = 200;
constexpr int kReadings = 5;

// Sends a command and reads its answer, which must hold the acknowledgement.
bool Acknowledged(CSerialObject& serial, const char* traceLine, const char* command,
                  exchange::CollectedAnswer& answer) {
    if (exchange::Send(serial, traceLine, kName, command) == 0) return false;
    return answer.ReceiveMore(serial) != 0 && answer.Holds(kAcknowledged);
}

}  // namespace

WbalanceKern_EW_EGN_EWB::WbalanceKern_EW_EGN_EWB() {
    SetCommPort(0);
    SetCommConfig(1200, ParityNone, 8, TwoStopBits, NoFlowControl, 1, 'S');
}

WbalanceKern_EW_EGN_EWB::~WbalanceKern_EW_EGN_EWB() = default;

// `+  12.50 G S`: sign, seven characters of value, two of unit, one of tolerance, status.
int WbalanceKern_EW_EGN_EWB::ParseWeight(char* answer, double* weight, int* decimals) {
    if (answer == nullptr || std::strlen(answer) < kRecordLength) return 0;
    const std::size_t start = answer[0] == 'A' ? kAcknowledgementLine : 0;
    std::string record(std::string_view(answer).substr(start, kRecordLength));
    record.resize(kRecordLength);
    const std::string value = record.substr(1, 7);
    const double magnitude = c_locale::NumberIn(value.c_str());
    if (decimals != nullptr && value.find('.') != std::string::npos) *decimals = kDecimals;
    if (weight != nullptr) *weight = record[0] == '-' ? -magnitude : magnitude;
    return record[11] == 'S' ? 1 : 2;
}

int WbalanceKern_EW_EGN_EWB::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double scratch = 0.0;
    return Weight(1, &scratch, nullptr);
}

int WbalanceKern_EW_EGN_EWB::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    exchange::CollectedAnswer answer;
    return Acknowledged(*serialObject, "%s - Tare\n", kTare, answer) ? 1 : 0;
}

int WbalanceKern_EW_EGN_EWB::Weight(long mode, double* weight, int* decimals) {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    const char* command = mode == 2 ? kWeightAtOnce : kWeightWhenStable;
    exchange::CollectedAnswer answer;
    if (!Acknowledged(*serialObject, "%s - Weight\n", command, answer)) return 0;
    if (ParseWeight(answer.Text(), weight, decimals) != 0 ||
        (mode != 2 && AwaitRecord(weight, decimals))) {
        exchange::Trace(*serialObject, "%s - weight = %.2lf gr.\n\n", kName, *weight);
        return 1;
    }
    if (mode == 2 || mode == 0) {
        exchange::Trace(*serialObject, "Weight procedure failed!");
        return 0;
    }
    return AveragedWeight(weight);
}

int WbalanceKern_EW_EGN_EWB::TareSet(double /*preset*/) {
    return 0;
}

/// Reads on until the lines that have come hold a record, the first of which counts.
bool WbalanceKern_EW_EGN_EWB::AwaitRecord(double* weight, int* decimals) {
    exchange::CollectedAnswer answer;
    return exchange::TryFor(kStableWaitMs, kStablePauseMs, [&] {
        answer.ReceiveMore(*serialObject);
        return ParseWeight(answer.Text(), weight, decimals) > 0;
    });
}

int WbalanceKern_EW_EGN_EWB::AveragedWeight(double* weight) {
    exchange::CollectedAnswer answer;
    if (!Acknowledged(*serialObject, "%s - Stable Weight STOP\n", kStop, answer)) return 0;
    double sum = 0.0;
    for (int reading = 0; reading < kReadings; ++reading) {
        double value = 0.0;
        if (Weight(2, &value, nullptr) == 0) return 0;
        sum += value;
    }
    if (weight != nullptr) *weight = sum / kReadings;
    return 1;
}
