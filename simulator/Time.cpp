#include "simulator/Time.h"

#include <cmath>
#include <regex>

namespace simulator {

std::optional<Time> parseTime(const std::string& text) {
    static const std::regex form("([0-9]{1,7}(\\.[0-9]{1,3})?)(ms|s)");
    std::smatch part;
    if (!std::regex_match(text, part, form)) return std::nullopt;
    const double factor = part[3] == "s" ? 1000 : 1;
    return Time(std::llround(std::stod(part[1]) * factor));
}

}  // namespace simulator
