#pragma once

#include <cstdint>
#include <string>

/// Text from an instrument, a file, a command line or another process. It may have any content. The
/// program passes it through these functions before every output as text.
namespace outside {

/// Whether a character can be shown as it is. Controls, line and paragraph separators, invisible
/// characters and those that change the direction of the text can't.
bool IsPrintable(std::uint32_t character);

/// The printable characters of UTF-8 text as they are, and every other byte as a record writes it:
/// "\r", "\n", "\x1b". A backslash is not changed, so a second call changes nothing.
std::string Printable(const std::string& text);

/// The same for text of several lines, whose line ends stay.
std::string PrintableLines(const std::string& text);

/// The beginning of the text if it is too long for a sentence, else the whole text.
std::string Shortened(const std::string& text);

/// Bytes in quotation marks, as a record writes them. If they are too long for a sentence: the
/// beginning, and the number of the other bytes.
std::string Quoted(const std::string& bytes);

}  // namespace outside
