#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace answers {

template <class Driver>
using Display = decltype(&Driver::DisplayMessage);
template <class Driver>
using SwitchOn = decltype(&Driver::TurnItOn);
template <class Driver>
using SwitchOff = decltype(&Driver::TurnItOff);
template <class Driver>
using Zeroing = decltype(&Driver::Zero);

template <template <class> class Member, class Driver, class = void>
struct Has : std::false_type {};
template <template <class> class Member, class Driver>
struct Has<Member, Driver, std::void_t<Member<Driver>>> : std::true_type {};

/// Calls the operation that the words name: "Weight 1", "TareSet 5", "DisplayMessage READY".
/// Throws std::invalid_argument when the driver has none of that name.
template <class Driver>
int Call(Driver& driver, const std::string& words, double* weight, int* decimals) {
    std::istringstream text(words);
    std::string operation;
    std::string argument;
    text >> operation >> argument;
    if (operation == "IsReady") return driver.IsReady();
    if (operation == "Tare") return driver.Tare();
    if (operation == "TareSet") return driver.TareSet(std::stod(argument));
    if (operation == "Weight") return driver.Weight(std::stol(argument), weight, decimals);
    if (operation == "RestoreFactorySettings") return driver.RestoreFactorySettings();
    if constexpr (Has<Display, Driver>::value)
        if (operation == "DisplayMessage") return driver.DisplayMessage(argument.data());
    if constexpr (Has<SwitchOn, Driver>::value)
        if (operation == "TurnItOn") return driver.TurnItOn();
    if constexpr (Has<SwitchOff, Driver>::value)
        if (operation == "TurnItOff") return driver.TurnItOff();
    if constexpr (Has<Zeroing, Driver>::value)
        if (operation == "Zero") return driver.Zero();
    throw std::invalid_argument("no operation " + words);
}

}  // namespace answers
