#include "simulator/LoadStep.h"

#include <regex>
#include <stdexcept>

namespace simulator {

LoadStep LoadStep::parse(const std::string& text) {
    static const std::regex form("([-+]?[0-9]{1,9}(\\.[0-9]{1,9})?)(@(.+))?");
    std::smatch part;
    const bool fits = std::regex_match(text, part, form);
    const auto at = fits && part[4].matched ? parseTime(part[4]) : Time(0);
    if (!fits || !at)
        throw std::invalid_argument("load \"" + text +
                                    "\": a load is written GRAMS[@TIME], such as 12.34 or 100@5s");
    return {std::stod(part[1]), *at};
}

}  // namespace simulator
