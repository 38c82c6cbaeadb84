#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/Time.h"

namespace simulator {

/// Something that goes wrong with any instrument, by name, all the time or for a while.
struct Fault {
    std::string name;
    std::string value;  ///< what the fault's description says; empty: its default
    Time from{0};
    std::optional<Time> until;  ///< empty: for ever

    /// Reads NAME[=VALUE][@START[+DURATION]], such as "silent", "late=1500ms", "truncated=5@2s" or
    /// "unplug=ttyUSB1@5s+2s", or the same in words: "silent at 8s for 2s", "unplug at 5s for 2s as
    /// ttyUSB1". Throws std::invalid_argument, saying what is allowed.
    static Fault Parse(const std::string& text);

    /// The same fault when its times count from `start`.
    Fault ShiftedBy(Time start) const;

    bool IsActive(Time now) const { return now >= from && (!until || now < *until); }
};

struct FaultDescription {
    std::string name;
    std::string initial;   ///< value when none is given
    std::string sentence;  ///< what happens, what the value means
};

/// All faults.
const std::vector<FaultDescription>& Faults();

}  // namespace simulator
