#pragma once

#include <map>
#include <string>

namespace texts {

/// What stands for the words in braces of a text, "{DEVICE}".
using FillIns = std::map<std::string, std::string>;

/// The text with each word in braces replaced. Braces in the replacement are not replaced again.
/// Throws std::out_of_range for a word without a replacement.
std::string Filled(const std::string& text, const FillIns& fillIns);

}  // namespace texts
