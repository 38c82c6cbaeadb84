#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace tool {

/// Writes all bytes to a file, pipe or terminal. It goes on after a signal and after a partial
/// write. Returns the reason if not all bytes were written, else nothing.
///
/// Once the user has interrupted, it no longer waits for room: it returns std::errc::interrupted.
[[nodiscard]] std::error_code WriteAll(int descriptor, std::string_view bytes);

/// The reader of standard output has ended, as in `| head -1`, or the terminal was closed.
class ReaderGone : public std::exception {
 public:
    const char* what() const noexcept override { return "nobody reads standard output"; }
};

/// Puts a text on standard output. Throws ToolError when not all of it was taken, ReaderGone when
/// nobody is there to take it.
void Print(std::string_view text);

/// Prints a line and its end. What comes from outside may be in it: what of it can't be shown is
/// printed as outside::Printable() writes it.
void PrintLine(const std::string& line);

/// Puts a text on standard error; where that can't be written, nobody can be told.
void Say(std::string_view text);

/// The same for a line, as PrintLine() prints it.
void SayLine(const std::string& line);

}  // namespace tool
