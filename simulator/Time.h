#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace simulator {

/// Virtual time: milliseconds since the instrument was set up. The simulated instruments read no
/// clock: their caller says what time it is.
using Time = std::chrono::milliseconds;

using namespace std::chrono_literals;

/// Reads "500ms", "2s" or "1.5s"; empty for other text.
std::optional<Time> ParseTime(const std::string& text);

}  // namespace simulator
