#include "UnaskedOutput.h"

#include "readings/Fields.h"

namespace tool {
namespace {

using Clock = std::chrono::steady_clock;

// A print-out of ten lines takes two seconds at 1200 baud.
constexpr std::chrono::seconds kLongestPrintOut(3);

enum class Heard { Nothing, Rubbish, Text };

// What comes up to a line feed, or before the time-out. What came earlier is cleared first.
Heard Listen(BalanceProcess& line) {
    Request listen;
    listen.operation = Operation::Display;
    const Report report = line.Perform(listen, [] {});
    if (report.died || report.endless || report.outcome.result == 0) return Heard::Nothing;
    const std::string text = WireExchanges(report.trace).Received();
    return !text.empty() && LooksLikeText(text) ? Heard::Text : Heard::Rubbish;
}

}  // namespace

bool SendsUnasked(BalanceProcess& line) {
    if (Listen(line) == Heard::Nothing) return false;
    const auto begin = Clock::now();
    int texts = 0;
    int listens = 0;
    for (bool isLast = false; !isLast; ++listens) {
        isLast = Clock::now() - begin >= kLongestPrintOut;
        const Heard heard = Listen(line);
        if (heard == Heard::Nothing) return false;
        if (heard == Heard::Text) ++texts;
    }
    // Listening may begin in the middle of a character, which then is rubbish.
    return 2 * texts > listens;
}

}  // namespace tool
