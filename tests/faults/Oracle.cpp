#include "Oracle.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace faults {
namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

std::string Formatted(std::size_t size, const char* what, const char* format, ...) {
    std::vector<char> text(8192);
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= size) throw ProcessEnd{what};
    return text.data();
}

Flow Carry(const Steps& steps, Run& run) {
    for (const Step& step : steps) {
        const Flow flow = step(run);
        if (flow.kind != Flow::GoOn) return flow;
    }
    return {};
}

Balance::~Balance() {
    if (hasSerialObject_ && port_ == Port::Held) line_.OnDelete();
}

int Balance::Perform(const Call& call, double* weight, int* decimals) {
    Run run{*this, call, weight, decimals};
    return Carry(description_.operations.at(call.operation), run).result;
}

int Balance::OpenAndClear() {
    if (description_.settings.port < 0 || !hasSerialObject_) return 0;
    if (Open() == 0) return 0;
    if (Configure() == 0) {
        // The port object is deleted first, then the serial object, which is not created again.
        hasSerialObject_ = false;
        return 0;
    }
    if (Clear() == 0) {
        Close();
        return 0;
    }
    return 1;
}

int Balance::Open() {
    const Settings& settings = description_.settings;
    if (port_ == Port::Held) {
        Trace(Formatted(1024, "a trace line", "COM%d alread open!", settings.port));
        return 2;
    }
    const std::string device = Formatted(
        20, "a device name", settings.kind == 'S' ? "/dev/ttyS%d" : "/dev/ttyUSB%d", settings.port);
    if (line_.TakeAllocationFailure()) {
        Trace("NULL POINTER ... UNABLE OPENING COMM PORT!\n\n");
        return 0;
    }
    port_ = Port::Held;
    line_.OnConstruct(device);
    if (line_.OnOpen()) {
        Trace(device + " OPENED SUCCESSFULLY!\n\n");
        return 1;
    }
    Trace("INVALID COMM PORT ... UNABLE OPENING " + device + "!\n\n");
    return 0;
}

int Balance::Configure() {
    const Settings& settings = description_.settings;
    bool ok = line_.OnSet("setBaudRate " + std::to_string(settings.baud));
    const auto set = [&](const char* setting, const std::map<int, const char*>& values, int code) {
        const auto value = values.find(code);
        if (value == values.end()) return;
        if (!line_.OnSet(std::string(setting) + " " + value->second)) ok = false;
    };
    set("setDataBits", {{7, "7"}, {8, "8"}}, settings.dataBits);
    set("setParity", {{0, "none"}, {1, "odd"}, {2, "even"}, {3, "mark"}, {4, "space"}},
        settings.parity);
    set("setStopBits", {{0, "1"}, {1, "1.5"}, {2, "2"}}, settings.stopBits);
    set("setFlowControl", {{0, "none"}, {3, "hardware"}, {16, "software"}}, settings.flowControl);
    if (settings.timeoutSeconds < 0 || settings.timeoutSeconds > 60) ok = false;
    if (ok) timeoutMs_ = settings.timeoutSeconds == 0 ? 100 : settings.timeoutSeconds * 1000;
    Trace(Formatted(1024, "a trace line",
                    "Balance Comm Port settings:\nBaud rate = %d\nParity = %d\nData bits = %d\n"
                    "Stop bits = %d\nFlow control = %d\nTimeout = %d\n===> %s\n\n",
                    settings.baud, settings.parity, settings.dataBits, settings.stopBits,
                    settings.flowControl, settings.timeoutSeconds, ok ? "OK" : "FAIL"));
    if (ok) return 1;
    line_.OnDelete();
    port_ = Port::None;
    return 0;
}

int Balance::Clear() {
    return port_ == Port::Held && line_.OnClear() ? 1 : 0;
}

void Balance::Close() {
    if (port_ == Port::Held) {
        line_.OnClose();
        line_.OnDelete();
        port_ = Port::None;
    }
    Trace("\nSCALE COM PORT HAS BEEN CLOSED.\n");
}

int Balance::Send(const std::string& command) {
    const bool sent =
        port_ == Port::Held && line_.OnWrite(command) == static_cast<long>(command.size());
    Trace(Formatted(1024, "a trace line", "<== %s ... %s\n\n", command.c_str(),
                    sent ? "OK" : "FAIL"));
    return sent ? 1 : 0;
}

bool Balance::Wait(long ms) {
    return port_ == Port::Held && line_.OnWait(ms);
}

bool Balance::Receive(std::string& text, long size, int attempts, const char* terminator) {
    std::string answer;
    const long start = line_.Now();
    int attempt = 1;
    while (true) {
        bool finished = false;
        if (!Attempt(answer, terminator, finished))
            Trace("Timeout elapsed in scale read (attempt n. " + std::to_string(attempt) + ")\n");
        if (finished || attempt >= attempts) break;
        ++attempt;
    }
    Trace(Formatted(1024, "a trace line", "Read from scale: %s (time elapsed: %d ms)\n",
                    answer.c_str(), static_cast<int>(line_.Now() - start)));
    // At most `size` bytes are copied, and none after a zero byte.
    text = std::string(answer.c_str()).substr(0, static_cast<std::size_t>(size));
    return !answer.empty();
}

/// False when the attempt's time is over.
bool Balance::Attempt(std::string& answer, const char* terminator, bool& finished) {
    if (!Wait(timeoutMs_)) return false;
    std::string chunk = line_.OnRead();
    answer += chunk;
    if (terminator == nullptr) {
        finished = chunk.empty() && !answer.empty();
        return true;
    }
    if (!chunk.empty() && EndsWith(chunk, terminator)) {
        finished = true;
        return true;
    }
    const long timer = line_.Now();
    while (true) {
        if (Wait(10)) {
            chunk = line_.OnRead();
            answer += chunk;
            if (chunk.empty()) Pause(20);
        }
        finished = EndsWith(answer, terminator);
        if (finished) return true;
        if (line_.Now() - timer >= timeoutMs_) return false;
    }
}

bool Balance::ReceiveAll(std::string& text, std::size_t most, long size, char endChar) {
    while (true) {
        std::string chunk;
        if (!Receive(chunk, size, 3, nullptr) || chunk.empty()) break;
        text += chunk;
        if (text.size() > most) {
            text.resize(most);
            break;
        }
        if (text.back() == endChar) break;
        Pause(100);
    }
    if (text.empty()) {
        Trace("Null answer received from scale\n");
        return false;
    }
    Trace(Formatted(1024, "a trace line", "Read from scale: %s\n", text.c_str()));
    return true;
}

void Balance::Trace(const std::string& text) {
    line_.OnTrace(text);
}

}  // namespace faults
