// Sartorius, the maker's own interface protocol: commands of ESC, a letter and perhaps a parameter.
//
//   > ESC "P\r\n"     < "+   123.56 g  \r\n"          16 characters: sign, blank, value in 8
//                     < "N     +   123.56 g  \r\n"    22: an identifier in 6, then the same
//   > ESC "s3_\r\n"   cancel; no answer is waited for
//   > ESC "T\r\n"     tare and zero; likewise
//   > ESC "t5.00_\r\n" ESC "kF4_\r\n"   type a text, press soft key 4: store it as the tare
//
// With a preset tare active two lines come, the tare first:
//   "TP1   +     5.00 g  \r\nN1    -     5.00 g  \r\n"

#include <wbalance/WbalanceSartorius.h>

#include <strings.h>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "BoundedText.h"
#include "CLocale.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Generic Sartorius";

constexpr char kCancel[] = "\x1bs3_\r\n";
constexpr char kTare[] = "\x1bT\r\n";
constexpr char kTypePreset[] = "\x1bt%.2lf_\r\n";
constexpr char kStorePreset[] = "\x1bkF4_\r\n";
constexpr char kPrint[] = "\x1bP\r\n";

constexpr char kPresetTare[] = "TP1   ";
constexpr char kNet[] = "N1    ";

constexpr int kAttempts = 3;
constexpr const char* kNoTerminator = nullptr;

constexpr int kPlainLine = 16;
constexpr int kLineWithIdentifier = 22;
constexpr int kIdentifierSize = 6;
constexpr int kValueBehindSign = 2;
constexpr std::size_t kValueSize = 8;

bool Begins(const char* text, const char* identifier) {
    return strncasecmp(text, identifier, kIdentifierSize) == 0;
}

/// The length of the first line, line feed included, or 0 without a line feed.
std::ptrdiff_t FirstLineLength(const char* text) {
    const char* lineFeed = std::strchr(text, '\n');
    return lineFeed == nullptr ? 0 : lineFeed + 1 - text;
}

/// Where the sign of the value stands, or null when the layout is not known.
const char* FindSign(const char* text) {
    switch (FirstLineLength(text)) {
        case kPlainLine:
            return text;
        case kLineWithIdentifier: {
            const char* second = text + kLineWithIdentifier;
            const bool tareAndNet = Begins(text, kPresetTare) && Begins(second, kNet);
            return (tareAndNet ? second : text) + kIdentifierSize;
        }
        default:
            return nullptr;
    }
}

}  // namespace

WbalanceSartorius::WbalanceSartorius() {
    SetCommPort(0);
    SetCommConfig(1200, ParityOdd, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceSartorius::~WbalanceSartorius() = default;

double WbalanceSartorius::ParseWeight(char* answer, int* /*decimals*/) {
    // Zeros behind the text: every position that is looked at can be.
    char text[100] = {};
    bounded_text::Copy(text, answer, "a weight answer");
    const char* sign = FindSign(text);
    if (sign == nullptr) return 0.0;
    char value[kValueSize + 1] = {};
    std::memcpy(value, sign + kValueBehindSign, kValueSize);
    return (*sign == '-' ? -1.0 : 1.0) * c_locale::NumberIn(value);
}

int WbalanceSartorius::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double weight = 0.0;
    return Weight(1, &weight, nullptr);
}

int WbalanceSartorius::Tare() {
    if (serialObject == nullptr || CancelAndTare() == 0) return 0;
    Sleep(1000);
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    return std::fabs(weight) <= 0.1 ? 1 : 0;
}

int WbalanceSartorius::Weight(long /*mode*/, double* weight, int* decimals) {
    *weight = 0.0;
    if (serialObject == nullptr) return 0;
    serialObject->ClearErrorsAndBuffers();
    if (exchange::Send(*serialObject, "%s - Weight\n", kName, kPrint) == 0) return 0;
    Sleep(500);
    exchange::Answer<89> answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) return 0;
    *weight = ParseWeight(answer.Text(), decimals);
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n\n", kName, *weight);
    return 1;
}

int WbalanceSartorius::TareSet(double preset) {
    if (serialObject == nullptr || CancelAndTare() == 0) return 0;
    char text[32];
    bounded_text::Format(text, sizeof text, "a preset tare", kTypePreset, preset);
    // Nine characters, so that 9.99 is the largest preset: hosts know the limit.
    char command[10];
    bounded_text::Copy(command, text, "a preset-tare command");
    exchange::Trace(*serialObject, "%s - Set tare to %.2lf\n", kName, preset);
    if (serialObject->SendCommand(command) == 0) return 0;
    Sleep(1000);
    // Storing the preset is traced as a tare, and hosts rely on it.
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kStorePreset) == 0) return 0;
    Sleep(2000);
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    return std::fabs(preset + weight) <= 0.01 ? 1 : 0;
}

int WbalanceSartorius::CancelAndTare() {
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kCancel) == 0) return 0;
    return exchange::Send(*serialObject, "%s - Tare\n", kName, kTare);
}
