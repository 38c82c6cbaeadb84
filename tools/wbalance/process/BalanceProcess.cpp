#include "BalanceProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Interrupt.h"
#include "ToolError.h"
#include "line/PortLock.h"
#include "line/PortTrouble.h"

namespace tool {
namespace {

constexpr int kTickMs = 200;
constexpr int kLongestEndMs = 2000;
constexpr std::size_t kLargestPiece = 65536;
constexpr char kEndOfText = '\0';

[[noreturn]] void ThrowNoProcess() {
    const Finding finding{Trouble::NoProcess, {{"REASON", std::strerror(errno)}}};
    throw ToolError(CodeFor(finding.trouble), SentenceFor(finding));
}

// The trace's stream: a text crosses in pieces, because a packet has its bounds and what a '%' in
// an answer prints has not. No text holds a zero byte, so that one marks its end.
ssize_t SendText(void* socket, const char* bytes, std::size_t length) {
    const std::string text = std::string(bytes, length) + kEndOfText;
    for (std::size_t sent = 0; sent < text.size(); sent += kLargestPiece) {
        const std::size_t piece = std::min(kLargestPiece, text.size() - sent);
        if (send(*static_cast<int*>(socket), text.data() + sent, piece, MSG_NOSIGNAL) < 0)
            return -1;
    }
    return static_cast<ssize_t>(length);
}

// Packets, so that one traced text stays one text however long it waits to be read.
std::array<Descriptor, 2> PacketSockets() {
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0) ThrowNoProcess();
    return {Descriptor(pair[0]), Descriptor(pair[1])};
}

// A signal that is sent to the process that holds the port, as fuser -k does, is meant for the
// program.
void EndTheProgram(int signal) {
    kill(getppid(), signal);
}

}  // namespace

BalanceProcess::BalanceProcess(const Connection& connection, TraceSink sink)
    : sink_(std::move(sink)), device_(connection.port.Device()), driver_(*connection.driver) {
    if (LockIsNoFile(device_)) throw ToolError(WhyLocked(device_));
    auto [requests, childRequests] = PacketSockets();
    auto [trace, childTrace] = PacketSockets();
    auto [words, childWords] = PacketSockets();
    child_ = fork();
    if (child_ < 0) ThrowNoProcess();
    if (child_ == 0) {
        requests.Close();
        RunChild(connection, childRequests.Get(), childTrace.Get(), childWords.Get());
        _exit(0);
    }
    requests_ = std::move(requests);
    trace_ = std::move(trace);
    words_ = std::move(words);
}

// A child that closes its port takes the lock file away that stands for it. One that is killed
// leaves the file behind, and one of root's would keep other users from the port.
BalanceProcess::~BalanceProcess() {
    if (busy_ || !EndsByItself()) kill(child_, SIGKILL);
    while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
    RemoveLockOf(device_, child_);
}

bool BalanceProcess::EndsByItself() const {
    shutdown(requests_.Get(), SHUT_WR);
    pollfd end{trace_.Get(), 0, 0};
    return poll(&end, 1, kLongestEndMs) > 0;
}

// Nothing may be thrown out of the child: it would go on as if it were the parent.
void BalanceProcess::RunChild(const Connection& connection, int requests, int trace,
                              int words) const noexcept {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent ends this process when the user has interrupted it.
    signal(SIGINT, SIG_IGN);
    signal(SIGHUP, SIG_IGN);
    signal(SIGTERM, EndTheProgram);
    dup2(words, STDERR_FILENO);
    stdout = fopencookie(&trace, "w", {nullptr, SendText, nullptr, nullptr});
    setvbuf(stdout, nullptr, _IONBF, 0);
    Worker(connection, requests).Run();
}

void BalanceProcess::Start(const Request& request) {
    report_ = {};
    report_.request = request;
    hasReport_ = false;
    answer_ = {};
    busy_ = true;
    if (!SendRequest(requests_.Get(), request)) TakeOutcome();
}

std::vector<pollfd> BalanceProcess::Watched() const {
    return {{trace_.Get(), POLLIN, 0}, {requests_.Get(), POLLIN, 0}};
}

void BalanceProcess::Serve() {
    TakeTrace();
    TakeOutcome();
}

void BalanceProcess::TakeTrace() {
    std::string piece(kLargestPiece, '\0');
    for (;;) {
        const ssize_t length = recv(trace_.Get(), piece.data(), piece.size(), MSG_DONTWAIT);
        if (length <= 0) return;
        text_.append(piece, 0, static_cast<std::size_t>(length));
        if (text_.back() != kEndOfText) continue;
        text_.pop_back();
        Keep({std::chrono::system_clock::now(), std::exchange(text_, "")});
    }
}

void BalanceProcess::Keep(const TraceText& traced) {
    sink_(traced);
    if (report_.endless) return;
    (asking_ ? report_.question : report_.trace).push_back(traced);
    answer_.Take(traced);
    if (!answer_.IsEndless()) return;
    report_.endless = true;
    kill(child_, SIGKILL);
}

void BalanceProcess::TakeWords() {
    char text[1024];
    for (;;) {
        const ssize_t length = recv(words_.Get(), text, sizeof text, MSG_DONTWAIT);
        if (length <= 0) return;
        report_.words.append(text, static_cast<std::size_t>(length));
    }
}

void BalanceProcess::TakeOutcome() {
    if (report_.died) return;
    Outcome outcome;
    const ssize_t length = recv(requests_.Get(), &outcome, sizeof outcome, MSG_DONTWAIT);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    // What was traced before the outcome was sent may have come in after the last look.
    TakeTrace();
    report_.died = length != static_cast<ssize_t>(sizeof outcome);
    if (report_.died) report_.signal = SignalThatEndedIt();
    if (!report_.died && !asking_) report_.outcome = outcome;
    if (!report_.died && !asking_ && IsInDoubt()) return Ask();
    TakeWords();
    report_.finished = std::chrono::system_clock::now();
    busy_ = asking_ = false;
    hasReport_ = true;
}

bool BalanceProcess::IsInDoubt() const {
    if (driver_.question.empty() || !WaitsForThePan(report_.request.operation)) return false;
    const WireExchanges wire(report_.trace);
    return wire.AnythingSent() && !wire.AnythingReceived();
}

void BalanceProcess::Ask() {
    Request question;
    question.operation = Operation::Ask;
    asking_ = true;
    if (!SendRequest(requests_.Get(), question)) TakeOutcome();
}

// Of the child that has ended; it stays to be waited for.
int BalanceProcess::SignalThatEndedIt() const {
    siginfo_t end = {};
    while (waitid(P_PID, static_cast<id_t>(child_), &end, WEXITED | WNOWAIT) < 0 &&
           errno == EINTR) {
    }
    return end.si_code == CLD_EXITED ? 0 : end.si_status;
}

Report BalanceProcess::TakeReport() {
    hasReport_ = false;
    return std::exchange(report_, {});
}

Report BalanceProcess::Perform(const Request& request, const Tick& tick) {
    Start(request);
    while (IsBusy()) {
        auto watched = Watched();
        poll(watched.data(), watched.size(), kTickMs);
        if (Interrupted()) throw ToolError(ExitCode::Interrupted, "interrupted");
        Serve();
        tick();
    }
    return TakeReport();
}

}  // namespace tool
