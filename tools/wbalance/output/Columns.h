#pragma once

#include <string>

namespace tool {

/// How many columns of a terminal a UTF-8 text takes: wide characters two, combining ones none.
/// What is no printable character counts as one.
std::size_t WidthOf(const std::string& text);

/// The text with blanks behind it up to so many columns; a longer one as it is.
std::string Padded(const std::string& text, std::size_t columns);

/// The text in at most so many columns; ">" stands in the place of what was cut off behind. "?"
/// stands in the place of what is no printable character: its width would not be known.
std::string Cut(const std::string& text, std::size_t columns);

/// The same from the other end: "<" stands in the place of what was cut off in front.
std::string CutInFront(const std::string& text, std::size_t columns);

}  // namespace tool
