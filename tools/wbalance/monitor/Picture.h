#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "Statistics.h"
#include "readings/Measurement.h"

namespace tool {

/// What the live display shows of one balance.
struct DisplayedBalance {
    using Clock = std::chrono::steady_clock;

    std::string name;  ///< driver and port
    Reading reading;
    bool received = false;         ///< whether there has been a reading at all
    Clock::time_point receivedAt;  ///< of the reading
    Clock::duration freshFor{};    ///< how long a reading goes without its age
    std::string lost;              ///< why it is lost; empty: it is not
    Statistics statistics;
};

/// Of a terminal, in characters.
struct ScreenSize {
    std::size_t columns = 80;
    std::size_t rows = 24;

    bool operator==(const ScreenSize& other) const {
        return columns == other.columns && rows == other.rows;
    }
};

/// The lines that show the balances on a screen of that size: each with the weight large, or what
/// it is instead, its state and its statistics. Where that has no room, with the weight among the
/// text; then in one line each; then as many as have room, and how many more there are. No line is
/// as wide as the screen, and the last row stays free for the cursor.
std::vector<std::string> PictureOf(const std::vector<DisplayedBalance>& balances, ScreenSize size,
                                   DisplayedBalance::Clock::time_point now);

}  // namespace tool
