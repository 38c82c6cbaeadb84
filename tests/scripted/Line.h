#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace scripted {

/// Bytes from the instrument. They come `afterMs` after their command was transmitted.
struct Reply {
    std::string bytes;
    long afterMs = 0;
};

/// How one call on the port fails.
enum class PortFault {
    Refuse,      ///< open, setters and clear return false, write returns -1
    ShortWrite,  ///< write takes one byte less than it was given
    Silence,  ///< a wait ends without data after its whole time, even if bytes arrive in this time
    EmptyRead,  ///< a wait signals data at once and the read finds none
    HangUp      ///< from this call on the instrument's end is closed
};

/// The line, the instrument at its other end, and the clock, for tests of the real library with a
/// stand-in serial port. Nothing waits for real time. Every call is recorded with its time. Every
/// call can be made to fail.
/// The stand-in behaves as the real port does without an event loop. Written bytes are transmitted
/// in the next wait that finds nothing to read. A sleep transmits nothing. If there is unread data,
/// a wait returns at once.
///
/// One line for each thread: Line::Here(). A test starts with Reset().
class Line {
 public:
    struct Event {
        long at;           ///< virtual milliseconds since Reset()
        std::string text;  ///< for example `open /dev/ttyS0`, `write "S\r\n"`, `wait 1000: silence`
    };

    static Line& Here();
    void Reset();

    // What the instrument does.

    /// The next transmitted `command` that no earlier rule answers is answered with `replies`.
    void Answer(const std::string& command, std::vector<Reply> replies);
    /// Every `command` without such a rule is answered so.
    void AlwaysAnswer(const std::string& command, std::vector<Reply> replies);
    /// Bytes that come unasked at a time after Reset().
    void Arrive(long atMs, const std::string& bytes);
    /// At that time a wait signals data, and the read finds none.
    void SignalWithoutData(long atMs);
    /// Called with every transmitted command, after the rules. It may call Arrive().
    void OnCommand(std::function<void(const std::string&)> instrument);

    // What fails.

    /// The `nth` (from 1) call whose text starts with `call` ("open", "set", "setParity", "clear",
    /// "write", "wait") fails.
    void Fail(const std::string& call, int nth = 1, PortFault fault = PortFault::Refuse);
    /// The call with this number (from 1, see CallCount()) fails.
    void FailCall(int number, PortFault fault = PortFault::Refuse);
    /// The instrument's end is closed from now on.
    void HangUp();
    /// The next open of a device works again after HangUp().
    void PlugInAgain();
    /// The library's next allocation of an object or a buffer of its own fails.
    void FailNextAllocation();

    // What was seen.

    long Now() const { return now_; }
    /// Every call and trace in order, without times; traces as `trace "..."`, with C escapes.
    std::vector<std::string> Transcript() const;
    const std::vector<Event>& Events() const { return events_; }
    /// What was written to the port, one entry a command.
    std::vector<std::string> Sent() const { return sent_; }
    /// The transmitted bytes.
    std::vector<std::string> Left() const { return left_; }
    /// Every trace in one text.
    std::string Trace() const { return trace_; }
    /// The pauses (Sleep), in order.
    std::vector<int> Sleeps() const { return sleeps_; }
    /// How many calls on the port (open, setters, clear, write, wait) were made.
    int CallCount() const { return callCount_; }
    /// Whether a port is open.
    bool IsOpen() const { return open_; }
    /// How many port objects exist.
    int PortObjects() const { return portObjects_; }
    /// Forgets the transcript, the sent commands, traces and pauses; time, script and port stay.
    void Forget();

    // The stand-ins' side.

    void OnConstruct(const std::string& device);
    void OnDelete();
    bool OnOpen();
    void OnClose();
    bool OnSet(const std::string& setting);
    bool OnClear();
    long OnWrite(const std::string& bytes);
    bool OnWait(long ms);
    std::string OnRead();
    void OnSleep(int ms);
    void OnTrace(const std::string& text);
    bool TakeAllocationFailure();

 private:
    struct Arrival {
        long at;
        std::string bytes;
        bool signalOnly;
    };
    struct Rule {
        std::string command;
        std::vector<Reply> replies;
    };

    void Note(const std::string& text) { events_.push_back({now_, text}); }
    std::optional<PortFault> NextFault(const std::string& call);
    void SendPending();
    void Deliver(const std::string& command);
    void Schedule(long at, const std::string& bytes, bool signalOnly);
    std::optional<long> NextArrival() const;

    long now_ = 0;
    std::vector<Event> events_;
    std::vector<std::string> sent_;
    std::vector<std::string> left_;
    std::vector<std::string> pending_;
    std::vector<int> sleeps_;
    std::string trace_;
    std::vector<Arrival> arrivals_;
    std::vector<Rule> rules_;
    std::map<std::string, std::vector<Reply>> standing_;
    std::function<void(const std::string&)> instrument_;
    std::map<std::string, std::map<int, PortFault>> faultsByName_;
    std::map<std::string, int> callsByName_;
    std::map<int, PortFault> faultsByNumber_;
    int callCount_ = 0;
    std::string device_;
    bool open_ = false;
    bool hungUp_ = false;
    bool emptyRead_ = false;
    bool failAllocation_ = false;
    int portObjects_ = 0;
};

/// A text with its control characters and quotes as C escapes, in quotes.
std::string Quoted(const std::string& text);

/// While an object exists, everything that this process prints on standard output becomes a trace
/// of Line::Here(), in order with the calls on the port.
class TraceCapture {
 public:
    TraceCapture();
    ~TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

 private:
    std::FILE* saved_;
    std::FILE* stream_;
};

}  // namespace scripted
