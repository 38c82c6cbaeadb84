#pragma once

#include <map>
#include <string>

namespace texts {

/// What stands for the words in braces of a text, "{DEVICE}".
using FillIns = std::map<std::string, std::string>;

/// The text with each word in braces replaced. What replaces it stays as it is. Throws
/// std::out_of_range for a word that has nothing to stand for it.
std::string Filled(const std::string& text, const FillIns& fillIns);

}  // namespace texts
