#include "WireLog.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <stdexcept>

using simulator::LineEvent;

namespace {

std::string quoted(const std::string& bytes) {
    std::string text = "\"";
    for (const char byte : bytes) {
        char code[5];
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(byte));
        if (byte == '\r')
            text += "\\r";
        else if (byte == '\n')
            text += "\\n";
        else if (byte == '"' || byte == '\\')
            text += std::string("\\") + byte;
        else
            text += byte >= ' ' && byte <= '~' ? std::string(1, byte) : code;
    }
    return text + "\"";
}

std::string described(const LineEvent& event) {
    switch (event.kind) {
        case LineEvent::Kind::fromHost:
            return "> " + quoted(event.bytes) + " " + event.settings.text();
        case LineEvent::Kind::fromInstrument:
            return "< " + quoted(event.bytes);
        case LineEvent::Kind::lost:
            return "x " + quoted(event.bytes) + " lost, the port is closed";
        case LineEvent::Kind::unplugged:
            return "- " + event.bytes + " unplugged";
        case LineEvent::Kind::pluggedIn:
            return "+ " + event.bytes + " plugged in";
    }
    return {};
}

}  // namespace

WireLog::WireLog(const std::string& file, bool ofSeveral)
    : path_(file), out_(file == "-" ? std::cerr : file_), namesDevices_(ofSeveral) {
    if (file == "-") return;
    file_.open(file);
    if (!file_) throw std::runtime_error("cannot write the log " + file);
}

void WireLog::requireWhole() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!out_) throw std::runtime_error("the log " + path_ + " could not be written to its end");
}

void WireLog::write(const std::string& device, const LineEvent& event) {
    const std::lock_guard<std::mutex> lock(mutex_);
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%9.3f ",
                  static_cast<double>(event.time.count()) / 1000.0);
    out_ << seconds << (namesDevices_ ? device + " " : "") << described(event) << std::endl;
}
