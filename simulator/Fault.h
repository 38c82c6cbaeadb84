#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/Time.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// Something that can go wrong with any instrument, all the time or for a while.
struct Fault {
    std::string name;
    std::string value;  ///< what the fault's description says; empty: its default
    Time from{0};
    std::optional<Time> until;  ///< empty: for ever

    /// Reads NAME[=VALUE][@START[+DURATION]], such as "silent", "late=1500ms", "truncated=5@2s" or
    /// "unplug=ttyUSB1@5s+2s", or the same in words: "silent at 8s for 2s", "unplug at 5s for 2s as
    /// ttyUSB1". Throws std::invalid_argument, saying what is allowed.
    static Fault Parse(const std::string& text);

    /// The same fault with its times counted from `start`.
    Fault ShiftedBy(Time start) const;

    bool IsActive(Time now) const { return now >= from && (!until || now < *until); }
};

/// What faults do to an instrument at a moment.
struct FaultEffects {
    bool isBusy = false;
    bool isSilent = false;
    bool hasPower = true;
    bool isUnplugged = false;
    std::string returnsAs;  ///< the device as which an unplugged adapter comes back; empty: itself
    Indication::Range range = Indication::Range::Inside;
    Time delay{0};            ///< how much later answers come
    std::size_t rubbish = 0;  ///< random characters before an answer
    std::optional<std::size_t>
        longestAnswer;  ///< the host gets only so many characters of an answer
};

/// The effects of all faults that are in force at `now`. If two have the same name, the first one
/// counts.
FaultEffects EffectsOf(const std::vector<Fault>& faults, Time now);

/// One kind of fault: a row of the table in Fault.cpp, which has everything about it.
struct FaultDescription {
    enum class Value { None, Duration, Count, Device };

    std::string name;
    Value value;
    std::string initial;   ///< value when none is given
    std::string sentence;  ///< what happens, what the value means
    void (*act)(const Fault& fault, FaultEffects& effects);
};

/// The fault that pulls the adapter out. Scripts have special words for it, and it ends when the
/// adapter is plugged in.
inline constexpr char kUnplug[] = "unplug";

/// The table of all faults.
const std::vector<FaultDescription>& FaultTable();

}  // namespace simulator
