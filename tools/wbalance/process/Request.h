#pragma once

#include <string>

namespace tool {

/// What a command asks of a balance. Ask is the driver's question for a sign of life.
enum class Operation {
    Weigh,
    Tare,
    Zero,
    PresetTare,
    Display,
    SwitchOn,
    SwitchOff,
    FactoryReset,
    Ask
};

/// The mode in which only a stable weight is one, and that in which a balance does not wait for it.
constexpr long kStableOnly = 0;
constexpr long kAtOnce = 2;

/// Whether an instrument may wait for its pan to come to rest before it carries it out.
constexpr bool WaitsForThePan(Operation operation) {
    return operation == Operation::Weigh || operation == Operation::Tare ||
           operation == Operation::Zero || operation == Operation::PresetTare;
}

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
