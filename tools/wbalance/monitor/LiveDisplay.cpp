#include "LiveDisplay.h"

#include <unistd.h>

#include <cstdio>

#include "BigDigits.h"
#include "output/Stream.h"

namespace tool {
namespace {

std::string TrendText(const Statistics& statistics) {
    if (statistics.Trend() > 0) return "rising";
    return statistics.Trend() < 0 ? "falling" : "steady";
}

std::string StateText(const DisplayedBalance& balance) {
    if (!balance.lost.empty()) return "LOST: " + balance.lost;
    if (!balance.received) return "waiting for the first reading";
    if (!balance.reading.IsWeight()) return SentenceFor(balance.reading);
    return WordFor(balance.reading.stability) + ", " + TrendText(balance.statistics);
}

std::string StatisticsText(const Statistics& statistics) {
    char text[160];
    std::snprintf(text, sizeof text, "n %d   min %.6g   max %.6g   mean %.8g   drift %+.3g g/min",
                  statistics.Count(), statistics.Minimum(), statistics.Maximum(), statistics.Mean(),
                  statistics.Drift());
    return text;
}

}  // namespace

std::vector<std::string> LinesFor(const DisplayedBalance& balance) {
    const bool showsWeight = balance.received && balance.lost.empty() && balance.reading.IsWeight();
    const auto digits = BigDigits(showsWeight ? balance.reading.digits : "---");
    std::vector<std::string> lines = {balance.name};
    for (const auto& line : digits)
        lines.push_back("    " + line);
    if (showsWeight) lines.back() += " " + balance.reading.unit;
    lines.push_back("  " + StateText(balance));
    if (balance.statistics.Count() > 0) lines.push_back("  " + StatisticsText(balance.statistics));
    lines.emplace_back();
    return lines;
}

LiveDisplay::LiveDisplay() {
    Print("\x1b[?25l");
}

LiveDisplay::~LiveDisplay() {
    static_cast<void>(WriteAll(STDOUT_FILENO, "\x1b[?25h"));
}

void LiveDisplay::Draw(const std::vector<DisplayedBalance>& balances) {
    std::string picture = drawn_ > 0 ? "\x1b[" + std::to_string(drawn_) + "A" : "";
    drawn_ = 0;
    for (const auto& balance : balances) {
        for (const auto& line : LinesFor(balance)) {
            picture += line + "\x1b[K\n";
            ++drawn_;
        }
    }
    Print(picture + "\x1b[J");
}

}  // namespace tool
