#include "simulator/Time.h"

#include <cmath>

#include "simulator/Text.h"

namespace simulator {

std::optional<Time> ParseTime(const std::string& text) {
    constexpr double longestSeconds = 1e7;
    const std::size_t unit = text.find_first_not_of("0123456789.");
    if (unit == 0 || unit == std::string::npos) return std::nullopt;
    const auto number = ParseNumber(text.substr(0, unit));
    const std::string name = text.substr(unit);
    if (!number || *number > longestSeconds || (name != "s" && name != "ms")) return std::nullopt;
    return Time(std::llround(*number * (name == "s" ? 1000 : 1)));
}

}  // namespace simulator
