#pragma once

#include <cstdint>
#include <string>

/// Text that came from outside: from an instrument, a file, a command line, another process. It may
/// hold anything, and goes through here on its way to every output that is read as text.
namespace outside {

/// Whether a character can be shown as it is: it is no control, no line or paragraph separator, and
/// does not turn the direction of the text or hide in it.
bool IsPrintable(std::uint32_t character);

/// The printable characters of UTF-8 text as they are, and every other byte as a record writes it:
/// "\r", "\n", "\x1b". A backslash stays one, so that doing it twice changes nothing.
std::string Printable(const std::string& text);

/// The same for text of several lines, whose line ends stay.
std::string PrintableLines(const std::string& text);

/// The beginning of a text that is too long for a sentence; others whole.
std::string Shortened(const std::string& text);

/// Bytes in quotation marks, as a record writes them; of more than a sentence can hold the
/// beginning, and how many there are besides.
std::string Quoted(const std::string& bytes);

}  // namespace outside
