#include "WireLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
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
        case LineEvent::Kind::overflow:
            return "x " + quoted(event.bytes) + " lost, the line is full";
        case LineEvent::Kind::unplugged:
            return "- " + event.bytes + " unplugged";
        case LineEvent::Kind::pluggedIn:
            return "+ " + event.bytes + " plugged in";
        case LineEvent::Kind::trouble:
            return "! " + event.bytes;
    }
    return {};
}

int opened(const std::string& file) {
    if (file == "-") return STDERR_FILENO;
    // At its end wherever that is: the file may be emptied or shortened by others.
    const int descriptor =
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw std::runtime_error("cannot write the log " + file + ": " + std::strerror(errno));
    return descriptor;
}

}  // namespace

WireLog::WireLog(const std::string& file, bool ofSeveral)
    : path_(file), descriptor_(opened(file)), namesDevices_(ofSeveral) {}

WireLog::~WireLog() {
    if (descriptor_ != STDERR_FILENO) ::close(descriptor_);
}

void WireLog::requireWhole() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (allMissing_ > 0)
        throw std::runtime_error("the log " + path_ + " is not whole: " +
                                 std::to_string(allMissing_) + " events could not be written");
}

void WireLog::write(const std::string& device, const LineEvent& event) {
    const std::lock_guard<std::mutex> lock(mutex_);
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%9.3f ",
                  static_cast<double>(event.time.count()) / 1000.0);
    tellMissing();
    const int error =
        writeWhole(seconds + (namesDevices_ ? device + " " : "") + described(event) + "\n");
    if (error != 0) miss(error);
}

/// Ends a line that was cut off and says what is missing behind it.
void WireLog::tellMissing() {
    if (missing_ == 0) return;
    const std::string sentence =
        "! " + std::to_string(missing_) + " events could not be written here\n";
    if (writeWhole((isInLine_ ? "\n" : "") + sentence) == 0) missing_ = 0;
}

void WireLog::miss(int error) {
    if (missing_ == 0)
        std::cerr << "wbalance-sim: the log " + path_ +
                         " can't be written: " + std::strerror(error) +
                         "; what happens until it can is missing in it\n";
    ++missing_;
    ++allMissing_;
}

/// Returns the error number, 0 for success.
int WireLog::writeWhole(const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = ::write(descriptor_, text.data() + written, text.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count < 0 ? errno : EIO;
        written += static_cast<std::size_t>(count);
        isInLine_ = text[written - 1] != '\n';
    }
    return 0;
}
