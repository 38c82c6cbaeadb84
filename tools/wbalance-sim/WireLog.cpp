#include "WireLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "Record.h"
#include "simulator/HeldSignals.h"

using record::Entry;
using simulator::ConnectedInstrument;
using simulator::LineEvent;
using simulator::Time;

namespace {

constexpr std::size_t kMostWaitingBytes = std::size_t{1024} * 1024;

/// What the event is in words, where it is no bytes of a dialogue.
std::string Sentence(const LineEvent& event) {
    switch (event.kind) {
        case LineEvent::Kind::Lost:
            return "lost, the port is closed: " + event.bytes;
        case LineEvent::Kind::Overflow:
            return "lost, the line is full: " + event.bytes;
        case LineEvent::Kind::Unplugged:
            return event.bytes + " unplugged";
        case LineEvent::Kind::PluggedIn:
            return event.bytes + " plugged in";
        case LineEvent::Kind::OtherSettings:
            return "the host speaks at " + event.settings.Text() + ", the instrument listens at " +
                   event.bytes;
        case LineEvent::Kind::FromHost:
        case LineEvent::Kind::FromInstrument:
        case LineEvent::Kind::Trouble:
            return event.bytes;
    }
    return {};
}

Entry::Kind KindOf(const LineEvent& event) {
    if (event.kind == LineEvent::Kind::FromHost) return Entry::Kind::FromHost;
    if (event.kind == LineEvent::Kind::FromInstrument) return Entry::Kind::FromInstrument;
    return Entry::Kind::Event;
}

/// A line of the record, with its end.
std::string LineOf(Time time, Entry::Kind kind, const std::string& bytes) {
    Entry entry;
    entry.time = time;
    entry.kind = kind;
    entry.bytes = bytes;
    return TextOf(entry) + "\n";
}

std::string Date() {
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text = {};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

record::Header HeaderOf(const std::vector<ConnectedInstrument*>& instruments) {
    record::Header header;
    header.date = Date();
    for (ConnectedInstrument* each : instruments) {
        const std::string comma = each == instruments.front() ? "" : ", ";
        header.driver += comma + each->Name();
        header.port += comma + each->Device();
        header.line += comma + each->OwnSettings().Text();
    }
    return header;
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

WireLog::WireLog(const std::string& file) : path_(file), descriptor_(Opened(file)) {
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
    if (withoutRoom_ > 0) waiting_.push_back({last_, "", std::exchange(withoutRoom_, 0)});
    changed_.notify_all();
    changed_.wait(lock, [this] { return waiting_.empty(); });
}

void WireLog::RequireWhole() {
    WaitUntilWritten();
    if (allMissing_ > 0)
        throw std::runtime_error("the log " + path_ + " is not whole: " +
                                 std::to_string(allMissing_) + " events could not be written");
}

void WireLog::Begin(const std::vector<ConnectedInstrument*>& instruments) {
    std::string header = TextOf(HeaderOf(instruments));
    const std::lock_guard<std::mutex> lock(mutex_);
    namesDevices_ = instruments.size() > 1;
    WriteLater(Time(0), std::move(header));
}

void WireLog::Write(const std::string& device, const LineEvent& event) {
    std::string line = LineOf(event.time, KindOf(event), Sentence(event));
    const std::lock_guard<std::mutex> lock(mutex_);
    if (namesDevices_) line.insert(line.find(' '), " " + device);
    const std::string comment = SettingsComment(device, event);
    if (WriteLater(event.time, comment + line) && !comment.empty())
        hostSettings_[device] = event.settings.Text();
}

std::string WireLog::SettingsComment(const std::string& device, const LineEvent& event) const {
    if (event.kind != LineEvent::Kind::FromHost) return "";
    const auto known = hostSettings_.find(device);
    const std::string settings = event.settings.Text();
    if (known != hostSettings_.end() && known->second == settings) return "";
    return (namesDevices_ ? "# host of " + device : "# host") + ": " + settings + "\n";
}

/// Whether there was room for it.
bool WireLog::WriteLater(Time time, std::string text) {
    last_ = time;
    if (waitingBytes_ + text.size() > kMostWaitingBytes) {
        ++withoutRoom_;
        ++allMissing_;
        return false;
    }
    waitingBytes_ += text.size();
    waiting_.push_back({time, std::move(text), std::exchange(withoutRoom_, 0)});
    changed_.notify_all();
    return true;
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
    TellMissing(line.time);
    const int error = WriteWhole(line.text);
    if (error != 0) Miss(error);
}

/// Ends a line that was cut off, so that nobody takes it for a whole one, and says what is missing.
void WireLog::TellMissing(Time time) {
    if (missing_ == 0) return;
    const std::string sentence = LineOf(
        time, Entry::Kind::Event, std::to_string(missing_) + " events could not be written here");
    if (WriteWhole((isInLine_ ? "\\\n" : "") + sentence) == 0) missing_ = 0;
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
