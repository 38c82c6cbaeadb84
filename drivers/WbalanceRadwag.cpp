// Radwag, the common command set of the AS, PS, R, WTC, WTB and PUE C/31 series.
//
// An answer repeats the command and adds a status letter or a frame of 21 bytes: the command in 3,
// the stability mark (blank, "?" unstable, "^" and "v" out of range), a blank, the sign, the mass
// in 9, a blank, the unit in 3:
//   > "T\r\n"    < "T A\r\n" "T D\r\n"              in progress, done; also "T v", "T E", "T I"
//   > "Z\r\n"    < "Z A\r\n" "Z D\r\n"              also "Z ^", "Z E", "Z I"
//   > "S\r\n"    < "S A\r\n" "S    -      8.5 g  \r\n"  stable; "S E" when it never became so
//   > "SI\r\n"   < "SI ?       18.5 g  \r\n"        at once; "SI I" when there is none now

#include <wbalance/WbalanceRadwag.h>

#include <cstring>

#include "BoundedText.h"
#include "CLocale.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Radwag";

constexpr char kTare[] = "T\r\n";
constexpr char kZero[] = "Z\r\n";
constexpr char kStableWeight[] = "S\r\n";
constexpr char kImmediateWeight[] = "SI\r\n";

constexpr char kTareDone[] = "T D";
constexpr char kZeroDone[] = "Z D";
constexpr char kStableTimeout[] = "S E";
constexpr char kStableStarted[] = "S A";
constexpr char kStableRefused[] = "S I";
constexpr char kStable[] = "S  ";
constexpr char kImmediateRefused[] = "SI I";
constexpr char kImmediate[] = "SI ";

constexpr int kAttempts = 3;
constexpr int kDonePasses = 2;
constexpr int kWeightPasses = 3;
constexpr int kPassPauseMs = 300;

// The answers come without a terminator being asked for, so that "S A" and the frame behind it are
// usually one read.
constexpr const char* kNoTerminator = nullptr;

using Answer = exchange::Answer<65>;

const char* FindFrame(const char* answer) {
    const char* stable = std::strstr(answer, kStable);
    return stable != nullptr ? stable : std::strstr(answer, kImmediate);
}

}  // namespace

WbalanceRadwag::WbalanceRadwag() {
    SetCommPort(0);
    SetCommConfig(9600, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceRadwag::~WbalanceRadwag() = default;

int WbalanceRadwag::ParseWeight(char* answer, double* weight, int* decimals) {
    constexpr std::size_t kFieldStart = 2;
    constexpr std::size_t kFieldLength = 17;
    char text[100];
    bounded_text::Copy(text, answer, "a weight answer");
    const char* frame = FindFrame(text);
    if (frame == nullptr) return 0;

    // A '-' is kept wherever it stands, so that a stray one shows as a malformed number instead of
    // vanishing: hosts rely on it.
    char number[kFieldLength + 1] = {};
    std::size_t length = 0;
    const char* field = frame + kFieldStart;
    const char* end = field + strnlen(field, kFieldLength);
    for (; field != end; ++field) {
        if ((*field >= '0' && *field <= '9') || *field == '-' || *field == '.')
            number[length++] = *field;
    }
    if (weight != nullptr) *weight = c_locale::NumberIn(number);
    const char* point = std::strchr(number, '.');
    if (decimals != nullptr && point != nullptr)
        *decimals = static_cast<int>(number + length - point - 1);
    return 1;
}

int WbalanceRadwag::IsReady() {
    return OpenAndClear();
}

int WbalanceRadwag::Tare() {
    // Within the zero range a zeroing does what was asked for, and no second tare follows it.
    if (_Tare() != 0 || Zero() != 0) return 1;
    return _Tare();
}

int WbalanceRadwag::Weight(long mode, double* weight, int* decimals) {
    *weight = 0.0;
    if (serialObject == nullptr || IsReady() == 0) return 0;
    switch (mode) {
        case 0:
            return StableWeight(weight, decimals);
        case 1:
            if (const int status = Weight(0, weight, decimals); status != 0) return status;
            return Weight(2, weight, decimals);
        case 2:
            return ImmediateWeight(weight, decimals);
        default:
            return 0;
    }
}

int WbalanceRadwag::_Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    exchange::Trace(*serialObject, "Sending tare command...");
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    return AwaitDone(kTareDone);
}

int WbalanceRadwag::Zero() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    exchange::Trace(*serialObject, "Sending zero command...");
    if (exchange::Send(*serialObject, "%s - Zero\n", kName, kZero) == 0) return 0;
    return AwaitDone(kZeroDone);
}

/// Reads on until the command is done; it is never sent a second time.
int WbalanceRadwag::AwaitDone(const char* done) {
    for (int pass = 0; pass < kDonePasses; ++pass) {
        Answer answer;
        if (answer.Receive(*serialObject, kAttempts, kNoTerminator) != 0) {
            if (answer.Holds(done)) {
                exchange::Trace(*serialObject, "%s - Success.\n\n", kName);
                return 1;
            }
            exchange::Trace(*serialObject, "%s - Command fail!\n\n", kName);
        }
        Sleep(kPassPauseMs);
    }
    return 0;
}

int WbalanceRadwag::StableWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Stable weight\n", kName, kStableWeight) == 0) return 0;
    for (int pass = 0; pass < kWeightPasses; ++pass) {
        Answer answer;
        if (answer.Receive(*serialObject, kAttempts, kNoTerminator) != 0) {
            if (answer.Holds(kStableTimeout)) {
                exchange::Trace(*serialObject, "%s - Command timeout!\n", kName);
                return 0;
            }
            if (answer.Holds(kStable)) return Conclude(answer.Text(), weight, decimals);
            if (!answer.Holds(kStableStarted) && !answer.Holds(kStableRefused)) {
                exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
                return 0;
            }
            exchange::Trace(*serialObject, "%s - Command in progress..\n", kName);
        }
        Sleep(kPassPauseMs);
    }
    return 0;
}

int WbalanceRadwag::ImmediateWeight(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Unstable weight\n", kName, kImmediateWeight) == 0)
        return 0;
    for (int pass = 0; pass < kWeightPasses; ++pass) {
        Answer answer;
        if (answer.Receive(*serialObject, kAttempts, kNoTerminator) != 0) {
            // Also with a frame behind it.
            if (answer.Holds(kImmediateRefused)) {
                exchange::Trace(*serialObject, "%s - Command in progress..\n", kName);
            } else if (answer.Holds(kImmediate)) {
                return Conclude(answer.Text(), weight, decimals);
            } else {
                exchange::Trace(*serialObject, "%s - Command fail!\n", kName);
                return 0;
            }
        }
        Sleep(kPassPauseMs);
    }
    return 0;
}

/// Stores and traces the weight of an answer.
int WbalanceRadwag::Conclude(char* answer, double* weight, int* decimals) {
    const int status = ParseWeight(answer, weight, decimals);
    exchange::Trace(*serialObject, "%s - weight = %.2lf cc.\n\n", kName, *weight);
    return status;
}
