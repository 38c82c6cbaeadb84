#include "Line.h"

#include <algorithm>
#include <utility>

namespace scripted {

Line& Line::Here() {
    thread_local Line line;
    return line;
}

void Line::Reset() {
    // Port objects are kept at a reset, because a test may construct a driver before its script.
    const int objects = portObjects_;
    *this = Line{};
    portObjects_ = objects;
}

void Line::Answer(const std::string& command, std::vector<Reply> replies) {
    rules_.push_back({command, std::move(replies)});
}

void Line::AlwaysAnswer(const std::string& command, std::vector<Reply> replies) {
    standing_[command] = std::move(replies);
}

void Line::Arrive(long atMs, const std::string& bytes) {
    Schedule(atMs, bytes, false);
}

void Line::SignalWithoutData(long atMs) {
    Schedule(atMs, "", true);
}

void Line::OnCommand(std::function<void(const std::string&)> instrument) {
    instrument_ = std::move(instrument);
}

void Line::Fail(const std::string& call, int nth, PortFault fault) {
    faultsByName_[call][callsByName_[call] + nth] = fault;
}

void Line::FailCall(int number, PortFault fault) {
    faultsByNumber_[number] = fault;
}

void Line::HangUp() {
    hungUp_ = true;
    arrivals_.clear();
    pending_.clear();
}

void Line::PlugInAgain() {
    hungUp_ = false;
}

void Line::FailNextAllocation() {
    failAllocation_ = true;
}

bool Line::TakeAllocationFailure() {
    return std::exchange(failAllocation_, false);
}

std::vector<std::string> Line::Transcript() const {
    std::vector<std::string> texts;
    for (const Event& event : events_)
        texts.push_back(event.text);
    return texts;
}

void Line::Forget() {
    events_.clear();
    sent_.clear();
    left_.clear();
    sleeps_.clear();
    trace_.clear();
}

void Line::OnConstruct(const std::string& device) {
    device_ = device;
    ++portObjects_;
}

void Line::OnDelete() {
    open_ = false;
    pending_.clear();
    --portObjects_;
    Note("delete port");
}

bool Line::OnOpen() {
    const bool fails = NextFault("open").has_value() || hungUp_;
    Note("open " + device_ + (fails ? ": refused" : ""));
    open_ = !fails;
    return open_;
}

void Line::OnClose() {
    open_ = false;
    pending_.clear();
    Note("close");
}

bool Line::OnSet(const std::string& setting) {
    // A closed port stores the settings for the next open.
    const bool fails = NextFault(setting).has_value() || (open_ && hungUp_);
    Note(setting + (fails ? ": refused" : ""));
    return !fails;
}

bool Line::OnClear() {
    const bool fails = NextFault("clear").has_value() || !open_ || hungUp_;
    Note(fails ? "clear input: refused" : "clear input");
    if (fails) return false;
    const auto arrived = [this](const Arrival& arrival) { return arrival.at <= now_; };
    arrivals_.erase(std::remove_if(arrivals_.begin(), arrivals_.end(), arrived), arrivals_.end());
    return true;
}

long Line::OnWrite(const std::string& bytes) {
    const std::optional<PortFault> fault = NextFault("write");
    if (!open_ || fault == PortFault::Refuse) {
        Note("write " + Quoted(bytes) + ": refused");
        return -1;
    }
    const bool isShort = fault == PortFault::ShortWrite;
    Note("write " + Quoted(bytes) + (isShort ? ": short" : ""));
    const std::string taken = isShort ? bytes.substr(0, bytes.size() - 1) : bytes;
    sent_.push_back(taken);
    if (!hungUp_) pending_.push_back(taken);
    return static_cast<long>(taken.size());
}

bool Line::OnWait(long ms) {
    const std::optional<PortFault> fault = NextFault("wait");
    const std::string call = "wait " + std::to_string(ms);
    if (!open_ || hungUp_ || fault == PortFault::Refuse) {
        Note(call + ": refused");
        // Time also passes without a wait. Otherwise a loop that waits for the clock would never
        // end.
        ++now_;
        return false;
    }
    if (fault == PortFault::EmptyRead) {
        emptyRead_ = true;
        Note(call + ": data");
        return true;
    }
    std::optional<long> next = NextArrival();
    if (!next || *next > now_) {
        SendPending();
        next = NextArrival();
    }
    if (fault == PortFault::Silence || !next || *next > now_ + ms) {
        Note(call + ": silence");
        now_ += ms;
        return false;
    }
    now_ = std::max(now_, *next);
    Note(call + ": data");
    return true;
}

std::string Line::OnRead() {
    std::string bytes;
    if (!std::exchange(emptyRead_, false)) {
        while (!arrivals_.empty() && arrivals_.front().at <= now_) {
            const Arrival arrival = arrivals_.front();
            // A signal without data is its own read.
            if (arrival.signalOnly && !bytes.empty()) break;
            arrivals_.erase(arrivals_.begin());
            if (arrival.signalOnly) break;
            bytes += arrival.bytes;
        }
    }
    Note("read " + Quoted(bytes));
    return bytes;
}

void Line::OnSleep(int ms) {
    Note("Sleep " + std::to_string(ms));
    sleeps_.push_back(ms);
    now_ += std::max(0, ms);
}

void Line::OnTrace(const std::string& text) {
    trace_ += text;
    Note("trace " + Quoted(text));
}

std::optional<PortFault> Line::NextFault(const std::string& call) {
    std::optional<PortFault> fault;
    const auto take = [&fault](std::map<int, PortFault>& faults, int number) {
        const auto found = faults.find(number);
        if (found == faults.end()) return;
        fault = found->second;
        faults.erase(found);
    };
    take(faultsByNumber_, ++callCount_);
    // "setParity even" counts as "set" and as "setParity".
    const std::string name = call.substr(0, call.find(' '));
    take(faultsByName_[name], ++callsByName_[name]);
    if (name.rfind("set", 0) == 0) take(faultsByName_["set"], ++callsByName_["set"]);
    if (fault == PortFault::HangUp) HangUp();
    return fault;
}

void Line::SendPending() {
    const std::vector<std::string> leaving = std::exchange(pending_, {});
    for (const std::string& command : leaving)
        Deliver(command);
}

void Line::Deliver(const std::string& command) {
    left_.push_back(command);
    std::vector<Reply> replies;
    const auto rule = std::find_if(rules_.begin(), rules_.end(), [&](const Rule& candidate) {
        return candidate.command == command;
    });
    if (rule != rules_.end()) {
        replies = rule->replies;
        rules_.erase(rule);
    } else if (const auto standing = standing_.find(command); standing != standing_.end()) {
        replies = standing->second;
    }
    for (const Reply& reply : replies)
        Schedule(now_ + reply.afterMs, reply.bytes, false);
    if (instrument_) instrument_(command);
}

void Line::Schedule(long at, const std::string& bytes, bool signalOnly) {
    const auto later =
        std::upper_bound(arrivals_.begin(), arrivals_.end(), at,
                         [](long time, const Arrival& other) { return time < other.at; });
    arrivals_.insert(later, {at, bytes, signalOnly});
}

std::optional<long> Line::NextArrival() const {
    if (arrivals_.empty()) return std::nullopt;
    return arrivals_.front().at;
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char character : text) {
        switch (character) {
            case '\r':
                quoted += "\\r";
                break;
            case '\n':
                quoted += "\\n";
                break;
            case '"':
                quoted += "\\\"";
                break;
            case '\\':
                quoted += "\\\\";
                break;
            default:
                if (character >= ' ' && character <= '~') {
                    quoted += character;
                } else {
                    char code[5];
                    std::snprintf(code, sizeof code, "\\x%02x",
                                  static_cast<unsigned>(static_cast<unsigned char>(character)));
                    quoted += code;
                }
        }
    }
    return quoted + '"';
}

namespace {

ssize_t WriteTrace(void* /*cookie*/, const char* text, size_t size) {
    Line::Here().OnTrace(std::string(text, size));
    return static_cast<ssize_t>(size);
}

}  // namespace

TraceCapture::TraceCapture() : saved_(stdout) {
    std::fflush(stdout);
    cookie_io_functions_t functions{};
    functions.write = WriteTrace;
    stream_ = fopencookie(nullptr, "w", functions);
    std::setvbuf(stream_, nullptr, _IONBF, 0);
    stdout = stream_;
}

TraceCapture::~TraceCapture() {
    stdout = saved_;
    std::fclose(stream_);
}

}  // namespace scripted
