#pragma once

#include <string>
#include <vector>

namespace tool {

/// The lines of an answer without their line ends and without empty ones at the end.
std::vector<std::string> LinesOf(const std::string& answer);

/// `text` without the blanks at both ends.
std::string Trimmed(const std::string& text);

/// The words of `text` between blanks.
std::vector<std::string> WordsOf(const std::string& text);

/// Whether `text` is a number as balances print it: a sign or none, digits, at most one point.
bool IsNumber(const std::string& text);

/// `text` from `position`, at most `length` characters; empty where there is none.
std::string Field(const std::string& text, std::size_t position,
                  std::size_t length = std::string::npos);

/// Whether the bytes can be text of any instrument; otherwise the line settings are not right, or
/// there is noise on the line.
bool LooksLikeText(const std::string& bytes);

}  // namespace tool
