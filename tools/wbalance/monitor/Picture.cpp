#include "Picture.h"

#include <algorithm>

#include "BigDigits.h"
#include "OutsideText.h"
#include "output/Columns.h"

namespace tool {
namespace {

using TimePoint = DisplayedBalance::Clock::time_point;
using Lines = std::vector<std::string>;

constexpr std::size_t kContentColumns = 28;  // "12.3456 g  stable, falling" and some more

bool ShowsWeight(const DisplayedBalance& balance) {
    return balance.received && balance.lost.empty() && balance.reading.IsWeight();
}

std::string TrendText(const Statistics& statistics) {
    if (statistics.Trend() > 0) return "rising";
    return statistics.Trend() < 0 ? "falling" : "steady";
}

// "12 s", "5 min", "3 h"
std::string DurationText(DisplayedBalance::Clock::duration duration) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration).count();
    if (seconds < 120) return std::to_string(seconds) + " s";
    if (seconds < 7200) return std::to_string(seconds / 60) + " min";
    return std::to_string(seconds / 3600) + " h";
}

bool IsFresh(const DisplayedBalance& balance, TimePoint now) {
    return now - balance.receivedAt <= balance.freshFor;
}

std::string ReadingText(const DisplayedBalance& balance, TimePoint now) {
    const Reading& reading = balance.reading;
    if (!reading.IsWeight()) return SentenceFor(reading);
    const std::string stability = WordFor(reading.stability);
    return IsFresh(balance, now) ? stability + ", " + TrendText(balance.statistics) : stability;
}

std::string StateText(const DisplayedBalance& balance, TimePoint now) {
    if (!balance.lost.empty()) return "LOST: " + outside::Printable(balance.lost);
    if (!balance.received) return "waiting for the first reading";
    const std::string age =
        IsFresh(balance, now) ? "" : DurationText(now - balance.receivedAt) + " ago: ";
    return age + outside::Printable(ReadingText(balance, now));
}

// As it was received.
std::string UnitText(const DisplayedBalance& balance) {
    return outside::Printable(balance.reading.unit);
}

// The weight, where there is one, and its state.
std::string ContentText(const DisplayedBalance& balance, TimePoint now) {
    const std::string weight =
        ShowsWeight(balance) ? balance.reading.digits + " " + UnitText(balance) + "  " : "";
    return weight + StateText(balance, now);
}

void AddStatistics(Lines& lines, const Statistics& statistics) {
    if (statistics.Count() == 0) return;
    lines.push_back("  n " + std::to_string(statistics.Count()) + "  " +
                    statistics.NumbersText("", "  ") + statistics.DynamicText());
}

Lines LargeDigits(const DisplayedBalance& balance) {
    Lines lines;
    for (const auto& line : BigDigits(ShowsWeight(balance) ? balance.reading.digits : "---"))
        lines.push_back("    " + line);
    if (ShowsWeight(balance)) lines.back() += " " + UnitText(balance);
    return lines;
}

Lines Large(const DisplayedBalance& balance, TimePoint now) {
    Lines lines = LargeDigits(balance);
    lines.insert(lines.begin(), balance.name);
    lines.push_back("  " + StateText(balance, now));
    AddStatistics(lines, balance.statistics);
    lines.emplace_back();
    return lines;
}

Lines Small(const DisplayedBalance& balance, TimePoint now) {
    Lines lines = {balance.name, "  " + ContentText(balance, now)};
    AddStatistics(lines, balance.statistics);
    return lines;
}

Lines All(const std::vector<DisplayedBalance>& balances, TimePoint now,
          Lines (*form)(const DisplayedBalance&, TimePoint)) {
    Lines all;
    for (const auto& balance : balances) {
        const Lines lines = form(balance, now);
        all.insert(all.end(), lines.begin(), lines.end());
    }
    return all;
}

// A digit that is cut off would make another number.
bool DigitsFit(const std::vector<DisplayedBalance>& balances, std::size_t columns) {
    return std::all_of(balances.begin(), balances.end(), [columns](const auto& balance) {
        return WidthOf(LargeDigits(balance).back()) <= columns;
    });
}

std::string MoreText(const std::vector<DisplayedBalance>& balances, std::size_t shown) {
    const auto lost =
        std::count_if(balances.begin() + static_cast<std::ptrdiff_t>(shown), balances.end(),
                      [](const auto& balance) { return !balance.lost.empty(); });
    return "and " + std::to_string(balances.size() - shown) + " more" +
           (lost > 0 ? ", " + std::to_string(lost) + " lost" : "");
}

// Balances of one driver differ in the end of their names, so that stays.
Lines OneLineEach(const std::vector<DisplayedBalance>& balances, std::size_t columns,
                  std::size_t rows, TimePoint now) {
    std::size_t nameColumns = 0;
    for (const auto& balance : balances)
        nameColumns = std::max(nameColumns, WidthOf(balance.name));
    const std::size_t room = columns - std::min(columns, kContentColumns);
    nameColumns = std::min(nameColumns, std::max(room, columns * 2 / 5));
    const std::size_t shown = balances.size() <= rows ? balances.size() : rows - 1;
    Lines lines;
    for (std::size_t i = 0; i < shown; ++i) {
        lines.push_back(Padded(CutInFront(balances[i].name, nameColumns), nameColumns) + " " +
                        ContentText(balances[i], now));
    }
    if (shown < balances.size()) lines.push_back(MoreText(balances, shown));
    return lines;
}

Lines Composed(const std::vector<DisplayedBalance>& balances, std::size_t columns, std::size_t rows,
               TimePoint now) {
    const Lines large = All(balances, now, Large);
    if (large.size() <= rows && DigitsFit(balances, columns)) return large;
    const Lines small = All(balances, now, Small);
    if (small.size() <= rows) return small;
    return OneLineEach(balances, columns, rows, now);
}

}  // namespace

std::vector<std::string> PictureOf(const std::vector<DisplayedBalance>& balances, ScreenSize size,
                                   TimePoint now) {
    if (size.columns < 2 || size.rows < 2) return {};
    // A character in the last column would make some terminals begin a new line.
    const std::size_t columns = size.columns - 1;
    Lines lines = Composed(balances, columns, size.rows - 1, now);
    for (auto& line : lines)
        line = Cut(line, columns);
    return lines;
}

}  // namespace tool
