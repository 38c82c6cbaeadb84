#pragma once

#include <poll.h>
#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

#include "Descriptor.h"
#include "EndlessAnswer.h"
#include "WireExchange.h"
#include "Worker.h"

namespace tool {

/// An operation that has come to its end, and all that was traced during it.
struct Report {
    Request request;  ///< what was asked for
    Outcome outcome;
    bool died = false;  ///< its process has ended
    int signal = 0;     ///< that ended it; 0: it ended by itself
    std::string words;  ///< what it said on standard error
    std::vector<TraceText> trace;
    bool endless = false;  ///< it was given up, because the instrument sends without end
    /// What came of the driver's question, which follows an operation to which nothing was said.
    std::vector<TraceText> question;
    WallTime finished;
};

/// A balance, driven by the library in a child process of its own.
/// No function but Perform() waits for the balance. To run several balances, poll Watched() and
/// call Serve(). The child ends with this object: an idle child closes its port, a busy one is
/// killed.
/// If the instrument does not answer an operation, the driver's question follows: an instrument
/// that waits for its pan to come to rest looks like one that is switched off. An operation is
/// given up if the instrument sends without end.
class BalanceProcess {
 public:
    using TraceSink = std::function<void(const TraceText&)>;
    using Tick = std::function<void()>;

    /// Forks; the process must have one thread. `sink` is called for each traced text as it comes.
    /// Throws ToolError where descriptors or memory are short, or no lock file can stand for the
    /// port.
    BalanceProcess(const Connection& connection, TraceSink sink);
    ~BalanceProcess();
    BalanceProcess(const BalanceProcess&) = delete;
    BalanceProcess& operator=(const BalanceProcess&) = delete;

    /// Hands the request over. One at a time.
    void Start(const Request& request);
    bool IsBusy() const { return busy_; }

    /// The descriptors on which news comes.
    std::vector<pollfd> Watched() const;
    /// Takes in all news there are, without waiting.
    void Serve();
    /// Whether an operation has ended, or the process itself, which it may also between two of
    /// them.
    bool HasReport() const { return hasReport_; }
    Report TakeReport();

    /// Start() and wait for the end; `tick` is called several times a second. Throws ToolError when
    /// the user interrupts.
    Report Perform(const Request& request, const Tick& tick);

 private:
    void RunChild(const Connection& connection, int requests, int trace, int words) const noexcept;
    bool EndsByItself() const;
    void TakeTrace();
    void Keep(const TraceText& traced);
    void TakeWords();
    void TakeOutcome();
    void Ask();
    bool IsInDoubt() const;
    int SignalThatEndedIt() const;

    const TraceSink sink_;
    const std::string device_;
    const DriverInfo& driver_;
    pid_t child_ = -1;
    Descriptor requests_;
    Descriptor trace_;
    Descriptor words_;
    bool busy_ = false;
    bool asking_ = false;
    bool hasReport_ = false;
    std::string text_;  ///< of the trace, as much of it as has come
    EndlessAnswer answer_;
    Report report_;
};

}  // namespace tool
