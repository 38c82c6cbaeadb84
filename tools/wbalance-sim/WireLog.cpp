#include "WireLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "simulator/HeldSignals.h"

using simulator::LineEvent;

namespace {

constexpr std::size_t kMostWaitingBytes = 1024 * 1024;

std::string Quoted(const std::string& bytes) {
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

std::string Described(const LineEvent& event) {
    switch (event.kind) {
        case LineEvent::Kind::FromHost:
            return "> " + Quoted(event.bytes) + " " + event.settings.Text();
        case LineEvent::Kind::FromInstrument:
            return "< " + Quoted(event.bytes);
        case LineEvent::Kind::Lost:
            return "x " + Quoted(event.bytes) + " lost, the port is closed";
        case LineEvent::Kind::Overflow:
            return "x " + Quoted(event.bytes) + " lost, the line is full";
        case LineEvent::Kind::Unplugged:
            return "- " + event.bytes + " unplugged";
        case LineEvent::Kind::PluggedIn:
            return "+ " + event.bytes + " plugged in";
        case LineEvent::Kind::OtherSettings:
            return "! the host speaks at " + event.settings.Text() +
                   ", the instrument listens at " + event.bytes;
        case LineEvent::Kind::Trouble:
            return "! " + event.bytes;
    }
    return {};
}

int Opened(const std::string& file) {
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
    : path_(file), descriptor_(Opened(file)), namesDevices_(ofSeveral) {
    const simulator::HeldSignals held;
    writer_ = std::thread([this] { WriteUntilStopped(); });
}

WireLog::~WireLog() {
    WaitUntilWritten();
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    writer_.join();
    if (descriptor_ != STDERR_FILENO) ::close(descriptor_);
}

void WireLog::WaitUntilWritten() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (withoutRoom_ > 0) waiting_.push_back({"", std::exchange(withoutRoom_, 0)});
    changed_.notify_all();
    changed_.wait(lock, [this] { return waiting_.empty(); });
}

void WireLog::RequireWhole() {
    WaitUntilWritten();
    if (allMissing_ > 0)
        throw std::runtime_error("the log " + path_ + " is not whole: " +
                                 std::to_string(allMissing_) + " events could not be written");
}

void WireLog::Write(const std::string& device, const LineEvent& event) {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%9.3f ",
                  static_cast<double>(event.time.count()) / 1000.0);
    std::string text = seconds + (namesDevices_ ? device + " " : "") + Described(event) + "\n";
    const std::lock_guard<std::mutex> lock(mutex_);
    if (waitingBytes_ + text.size() > kMostWaitingBytes) {
        ++withoutRoom_;
        ++allMissing_;
        return;
    }
    waitingBytes_ += text.size();
    waiting_.push_back({std::move(text), std::exchange(withoutRoom_, 0)});
    changed_.notify_all();
}

void WireLog::WriteUntilStopped() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
        if (waiting_.empty()) return;
        const Line& line = waiting_.front();  // stays where it is while others come
        lock.unlock();
        Put(line);
        lock.lock();
        waitingBytes_ -= line.text.size();
        waiting_.pop_front();
        changed_.notify_all();
    }
}

void WireLog::Put(const Line& line) {
    missing_ += line.missingBefore;
    TellMissing();
    const int error = WriteWhole(line.text);
    if (error != 0) Miss(error);
}

/// Ends a line that was cut off and says what is missing behind it.
void WireLog::TellMissing() {
    if (missing_ == 0) return;
    const std::string sentence =
        "! " + std::to_string(missing_) + " events could not be written here\n";
    if (WriteWhole((isInLine_ ? "\n" : "") + sentence) == 0) missing_ = 0;
}

void WireLog::Miss(int error) {
    if (missing_ == 0)
        std::cerr << "wbalance-sim: the log " + path_ +
                         " can't be written: " + std::strerror(error) +
                         "; what happens until it can is missing in it\n";
    ++missing_;
    ++allMissing_;
}

/// Returns the error number, 0 for success.
int WireLog::WriteWhole(const std::string& text) {
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
