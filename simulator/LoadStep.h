#pragma once

#include <string>

#include "simulator/Time.h"

namespace simulator {

/// A load that lies on the pan from a time on.
struct LoadStep {
    double grams = 0;
    Time at{0};  ///< since the instrument was set up; 0: has always been there

    /// Reads GRAMS[@TIME], such as "12.34" or "100@5s". Throws std::invalid_argument.
    static LoadStep Parse(const std::string& text);
};

}  // namespace simulator
