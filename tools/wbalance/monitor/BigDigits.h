#pragma once

#include <array>
#include <string>

namespace tool {

/// A number in letters three lines high, as on a balance's display. Characters other than digits,
/// sign, point and blank are left out.
std::array<std::string, 3> BigDigits(const std::string& number);

}  // namespace tool
