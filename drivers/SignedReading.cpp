#include "SignedReading.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "CLocale.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace signed_reading {
namespace {

constexpr int kRequests = 5;
constexpr int kSettleMs = 100;
constexpr char kSettleVariable[] = "WBALANCE_SLEEP";

constexpr long kPieceSize = 129;
constexpr std::size_t kAnswerSize = 129;

// How long to wait behind each piece, in milliseconds. Any number is taken as it is; Sleep() takes
// a negative one for none.
int SettleDelay() {
    const char* text = std::getenv(kSettleVariable);
    return text == nullptr ? kSettleMs : static_cast<int>(std::strtol(text, nullptr, 10));
}

// Collects the pieces of an answer into a zeroed buffer until one time-out brings nothing, or until
// the buffer is full: a balance that never stops sending costs the time of one answer. What does
// not fit is dropped.
void Collect(CSerialObject& serial, int settleMs, char (&answer)[kAnswerSize]) {
    exchange::Answer<kPieceSize> piece;
    std::size_t length = 0;
    while (length < kAnswerSize - 1 && piece.Receive(serial, 1, nullptr) != 0 &&
           piece.Text()[0] != '\0') {
        Sleep(settleMs);
        const std::size_t taken = std::min(std::strlen(piece.Text()), kAnswerSize - 1 - length);
        std::memcpy(answer + length, piece.Text(), taken);
        length += taken;
        exchange::Trace(
            serial, "Read from scale this attempt: %s. Complete answer from scale so far: %s\n\n",
            piece.Text(), answer);
    }
}

}  // namespace

int Read(CSerialObject& serial, const char* displayName, const char* command, long mode,
         double* weight) {
    exchange::Trace(serial, "%s - Weight\n", displayName);
    *weight = 0.0;
    const int settleMs = SettleDelay();
    exchange::Trace(serial, "Sleep timeout %d ms\n", settleMs);
    for (int request = 0; request < kRequests; ++request) {
        exchange::Trace(serial, "Sending weight command...");
        if (exchange::Send(serial, command) == 0) {
            exchange::Trace(serial, "...failed!\n");
            return 0;
        }
        exchange::Trace(serial, "success!\n");
        char answer[kAnswerSize] = {};
        Collect(serial, settleMs, answer);
        // Silence is not parsed: the weight of an answer refused before stays.
        const int status = answer[0] == '\0' ? 0 : Parse(answer, weight);
        if (status == 1 || (status == 2 && mode == 2)) {
            exchange::Trace(serial, "%s - weight = %.2lf gr.\n\n", displayName, *weight);
            return 1;
        }
        exchange::Trace(serial, "Bad scale answer. Retring read...\n");
    }
    exchange::Trace(serial, "Weight procedure failed!");
    return 0;
}

int Parse(const char* answer, double* weight) {
    *weight = 0.0;
    const auto holds = [answer](const char* mark) { return std::strstr(answer, mark) != nullptr; };
    const bool stable = holds("1+") || holds("1-");
    if (!stable && !holds("U+") && !holds("U-")) return 0;
    // The sign is not looked for at the mark: a '+' anywhere wins over a '-', and hosts know it so.
    const char* plus = std::strchr(answer, '+');
    *weight = plus != nullptr ? c_locale::NumberIn(plus + 1)
                              : -c_locale::NumberIn(std::strchr(answer, '-') + 1);
    return stable ? 1 : 2;
}

}  // namespace signed_reading
