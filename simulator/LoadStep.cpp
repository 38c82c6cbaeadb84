#include "simulator/LoadStep.h"

#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {

LoadStep LoadStep::Parse(const std::string& text) {
    const auto [load, time] = CutAt(text, '@');
    const auto grams = ParseNumber(load);
    const auto at = time ? ParseTime(*time) : Time(0);
    if (!grams || !at)
        throw std::invalid_argument("load \"" + text +
                                    "\": a load is written GRAMS[@TIME], such as 12.34 or 100@5s");
    return {*grams, *at};
}

}  // namespace simulator
