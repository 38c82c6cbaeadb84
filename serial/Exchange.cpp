#include "Exchange.h"

#include <cstdarg>
#include <cstring>
#include <string_view>

#include "BoundedText.h"
#include "marlet-small.h"

namespace exchange {
namespace {

constexpr int kTraceLevel = 1015;
constexpr std::size_t kTraceSize = 1024;
constexpr std::size_t kCommandSize = 10;

}  // namespace

void Trace(CSerialObject& serial, const char* format, ...) {
    char line[kTraceSize];
    va_list arguments;
    va_start(arguments, format);
    bounded_text::FormatList(line, sizeof line, "a trace line", format, arguments);
    va_end(arguments);
    serial.TavinTrace(kTraceLevel, line);
}

void Trace(const char* text) {
    CSerialObject().TavinTrace(kTraceLevel, text);
}

int Send(CSerialObject& serial, const char* command) {
    char copy[kCommandSize];
    bounded_text::Copy(copy, command, "a command");
    return serial.SendCommand(copy);
}

int Send(CSerialObject& serial, const char* format, const char* displayName, const char* command) {
    Trace(serial, format, displayName);
    return Send(serial, command);
}

bool TryFor(unsigned int limitMs, int pauseMs, const std::function<bool()>& attempt) {
    const unsigned int start = GetTickCount();
    while (!attempt()) {
        const unsigned int elapsed = GetTickCount() - start;
        Sleep(pauseMs);
        if (elapsed >= limitMs) return false;
    }
    return true;
}

bool Holds(const char* text, std::size_t within, const char* mark) {
    return std::string_view(text, strnlen(text, within)).find(mark) != std::string_view::npos;
}

}  // namespace exchange
