#pragma once

#include <optional>
#include <string>
#include <utility>

namespace simulator {

/// The number in `text`, such as "12", "-0.5" or "+100.25". Empty if `text` has anything else.
std::optional<double> ParseNumber(const std::string& text);

/// The whole number in `text`, which must have digits only. Empty for other text, and for numbers
/// outside `least` to `most`.
std::optional<int> ParseWholeNumber(const std::string& text, int least, int most);

/// The text before and after the first `separator`; without a separator, the second text is empty.
std::pair<std::string, std::optional<std::string>> CutAt(const std::string& text, char separator);

/// The first word and what stands behind the blank after it, of text as SingleSpaced gives it.
std::pair<std::string, std::string> FirstWord(const std::string& text);

/// The words of `text` with one blank between them: blanks, tabs and line ends are alike.
std::string SingleSpaced(const std::string& text);

}  // namespace simulator
