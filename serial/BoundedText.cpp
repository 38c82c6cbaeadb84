#include "BoundedText.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CLocale.h"

namespace bounded_text {
namespace {

__attribute__((format(printf, 3, 0))) int FormattedLength(char* buffer, std::size_t size,
                                                          const char* format, va_list arguments) {
    const c_locale::InForce inForce;
    return std::vsnprintf(buffer, size, format, arguments);
}

}  // namespace

void EndProcess(const char* what, std::size_t size) {
    // The trace that led here shall not be lost in a pipe or a file.
    std::fflush(stdout);
    std::fprintf(stderr, "libwbalance: %s does not fit its buffer of %zu bytes\n", what, size);
    std::abort();
}

void Copy(char* buffer, std::size_t size, const char* text, const char* what) {
    const std::size_t length = std::strlen(text);
    if (length >= size) EndProcess(what, size);
    std::memcpy(buffer, text, length + 1);
}

void Format(char* buffer, std::size_t size, const char* what, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatList(buffer, size, what, format, arguments);
    va_end(arguments);
}

void FormatList(char* buffer, std::size_t size, const char* what, const char* format,
                va_list arguments) {
    const int length = FormattedLength(buffer, size, format, arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= size) EndProcess(what, size);
}

}  // namespace bounded_text
