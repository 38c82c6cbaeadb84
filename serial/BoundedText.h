#pragma once

#include <cstdarg>
#include <cstddef>

/// Copying and formatting into buffers of fixed size. A text that does not fit is never cut: one
/// line on standard error names `what`, and the process ends with SIGABRT.
namespace bounded_text {

/// Copies `text` and its terminating zero into `buffer`.
void Copy(char* buffer, std::size_t size, const char* text, const char* what);

/// Formats as printf does in the "C" locale into `buffer`, terminating zero included.
__attribute__((format(printf, 4, 5))) void Format(char* buffer, std::size_t size, const char* what,
                                                  const char* format, ...);

/// The same with the arguments in a list.
__attribute__((format(printf, 4, 0))) void FormatList(char* buffer, std::size_t size,
                                                      const char* what, const char* format,
                                                      va_list arguments);

/// Copy() for buffers whose size is known where they stand.
template <std::size_t Size>
void Copy(char (&buffer)[Size], const char* text, const char* what) {
    Copy(buffer, Size, text, what);
}

/// Flushes standard output, says on standard error that `what` does not fit `size` bytes and ends
/// the process with SIGABRT.
[[noreturn]] void EndProcess(const char* what, std::size_t size);

}  // namespace bounded_text
