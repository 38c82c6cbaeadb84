// Any text may be traced: it prints, and where printf can say what, it prints that.

#include <wbalance/CSerialObject.h>

#include <algorithm>
#include <cstdio>
#include <regex>

#include "Harness.h"
#include "Line.h"

namespace {

// Directives for whole numbers alone: printf can take as many zeros as it wants.
bool PrintfIsSafe(const std::string& text) {
    static const std::regex safe(
        "([^%]|%%|%[-+ #0]*[0-9]{0,2}(\\.[0-9]{0,2})?(l|ll|h|hh|z)?[diuxXo])*");
    return text.size() < 200 && std::regex_match(text, safe);
}

std::string Printed(const std::string& format) {
    char text[32768];
    std::snprintf(text, sizeof text, format.c_str(), 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L,
                  0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L,
                  0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L,
                  0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L,
                  0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L, 0L,
                  0L, 0L, 0L, 0L, 0L, 0L);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = std::string(reinterpret_cast<const char*>(data), size).c_str();
    if (text.size() > 1023) return 0;
    scripted::Line& line = scripted::Line::Here();
    line.Reset();
    {
        const scripted::TraceCapture capture;
        CSerialObject serial;
        serial.TavinTrace(1015, text.c_str());
    }
    const std::string trace = line.Trace();
    fuzz::Require(line.Events().size() <= 1, "one call reaches the stream in one piece");
    if (text.find('%') == std::string::npos) fuzz::Require(trace == text, "plain text stays");
    if (PrintfIsSafe(text)) fuzz::Require(trace == Printed(text), "as printf with zeros");
    const auto directives = static_cast<std::size_t>(std::count(text.begin(), text.end(), '%'));
    fuzz::Require(trace.size() <= text.size() + directives * 2200, "no directive prints for ever");
    return 0;
}
