#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Line.h"

/// What every driver must do, described independently of the library.
///
/// A driver's operations are tables of steps (Steps.h): open and clear, trace, send, pause,
/// receive, look for a mark. The interpreter here carries them out over the same scripted line as
/// the library, with a transport of its own, so that under any fault the two can be compared call
/// by call, trace by trace and millisecond by millisecond.
namespace faults {

/// The line settings of a driver, as codes.
struct Settings {
    int port;
    int baud;
    int parity;
    int dataBits;
    int stopBits;
    int flowControl;
    int timeoutSeconds;
    char kind;
};

/// A host's call of an operation.
struct Call {
    std::string operation;  ///< the member function's name
    long mode = 0;          ///< of Weight
    double preset = 0.0;    ///< of TareSet
    std::string text = {};  ///< of DisplayMessage
};

/// A text did not fit its buffer. The contract says that the process ends here.
struct ProcessEnd {
    std::string what;  ///< for example "a trace line"
};

struct Run;

/// What follows a step.
struct Flow {
    enum Kind { GoOn, Done, LeavePasses, NextPass } kind = GoOn;
    int result = 0;
};

using Step = std::function<Flow(Run&)>;
using Steps = std::vector<Step>;
using Test = std::function<bool(const Run&)>;
using Number = std::function<double(const Run&)>;

/// A driver as a table.
struct Description {
    std::string displayName;
    Settings settings;
    std::map<std::string, Steps> operations;  ///< by the member function's name
    int flagA = 0;
    int flagB = 0;
    int flagC = 0;
    int protocol = 0;
    /// IsReady calls Weight, and Weight calls IsReady. Only a failing call on the port ends this.
    bool endless = false;
};

/// The transport and the state of one driver object.
class Balance {
 public:
    Balance(const Description& description, scripted::Line& line)
        : description_(description),
          line_(line),
          flagA(description.flagA),
          flagB(description.flagB),
          flagC(description.flagC),
          protocol(description.protocol) {}
    ~Balance();
    Balance(const Balance&) = delete;
    Balance& operator=(const Balance&) = delete;

    /// Runs an operation from its table. The pointers may be null where the driver allows it.
    int Perform(const Call& call, double* weight, int* decimals);

    const Description& Driver() const { return description_; }
    bool HasSerialObject() const { return hasSerialObject_; }
    long Now() const { return line_.Now(); }

    int OpenAndClear();
    int Clear();
    void Close();
    int Send(const std::string& command);
    /// Receives one answer. Returns false when nothing came. An answer that begins with a zero byte
    /// counts as received; its text is empty.
    bool Receive(std::string& text, long size, int attempts, const char* terminator);
    /// Reads rounds of at most `size` characters and appends them to `text`, until a round ends in
    /// `endChar` or is empty. The text has at most `most` characters: a round that exceeds this
    /// ends the collection.
    bool ReceiveAll(std::string& text, std::size_t most, long size, char endChar);
    void Pause(int ms) { line_.OnSleep(ms); }
    void Trace(const std::string& text);

 private:
    enum class Port { None, Held };

    int Open();
    int Configure();
    bool Wait(long ms);
    bool Attempt(std::string& answer, const char* terminator, bool& finished);

    const Description& description_;
    scripted::Line& line_;
    bool hasSerialObject_ = true;
    Port port_ = Port::None;
    long timeoutMs_ = 500;

 public:
    int flagA;
    int flagB;
    int flagC;
    int protocol;
};

/// An operation under way: its arguments and its local variables.
struct Run {
    Balance& balance;
    Call call;
    double* weight;
    int* decimals;
    bool came = false;        ///< whether anything came in the last receive
    std::string answer = {};  ///< what it got
    double value = 0.0;       ///< the number last parsed
    int status = 0;           ///< what the driver's own parser said
    double sum = 0.0;
    bool seen = false;     ///< a dynamic reading was seen
    double reading = 0.0;  ///< what a reading within another operation gave
    long start = 0;        ///< a noted tick
    int repeated = 0;
};

/// Carries out steps until one of them decides.
Flow Carry(const Steps& steps, Run& run);

/// printf into a string; `what` names the buffer when the text does not fit `size` bytes.
__attribute__((format(printf, 3, 4))) std::string Formatted(std::size_t size, const char* what,
                                                            const char* format, ...);

}  // namespace faults
