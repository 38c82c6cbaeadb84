#pragma once

#include <string>
#include <vector>

#include "Statistics.h"
#include "readings/Measurement.h"

namespace tool {

/// What the live display shows of one balance.
struct DisplayedBalance {
    std::string name;  ///< driver and port
    Reading reading;
    bool received = false;  ///< whether there has been a reading at all
    std::string lost;       ///< why it is lost; empty: it is not
    Statistics statistics;
};

/// The lines of one balance: the weight large, or what it is instead, stability, trend, minimum,
/// maximum, mean and drift.
std::vector<std::string> LinesFor(const DisplayedBalance& balance);

/// A block of lines at the bottom of the terminal that is drawn over itself.
class LiveDisplay {
 public:
    LiveDisplay();   ///< hides the cursor
    ~LiveDisplay();  ///< shows it again; the last picture stays
    LiveDisplay(const LiveDisplay&) = delete;
    LiveDisplay& operator=(const LiveDisplay&) = delete;

    void Draw(const std::vector<DisplayedBalance>& balances);

 private:
    std::size_t drawn_ = 0;
};

}  // namespace tool
