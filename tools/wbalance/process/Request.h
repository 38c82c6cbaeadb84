#pragma once

#include <string>

namespace tool {

/// What a command asks of a balance.
enum class Operation { Weigh, Tare, Zero, PresetTare, Display, SwitchOn, SwitchOff, FactoryReset };

/// The mode in which only a stable weight is one, and that in which a balance does not wait for it.
constexpr long kStableOnly = 0;
constexpr long kAtOnce = 2;

/// One operation with its arguments; only those of the operation are looked at.
struct Request {
    Operation operation = Operation::Weigh;
    long mode = 1;       ///< of Weigh: kStableOnly, 1 a stable weight or else another, kAtOnce
    double grams = 0.0;  ///< of PresetTare
    std::string text;    ///< of Display
};

/// What the library returned for it.
struct Outcome {
    int result = 0;
    double weight = 0.0;
};

}  // namespace tool
