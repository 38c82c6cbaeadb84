#include "Interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>

namespace tool {
namespace {

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t hungUp = 0;
volatile std::sig_atomic_t continued = 0;

// Set by HoldTerminalSignals(); else nothing is held back.
sigset_t waitingMask;
bool holding = false;

void NoteInterrupt(int /*signal*/) {
    interrupted = 1;
}

void NoteHangup(int /*signal*/) {
    hungUp = 1;
}

void NoteContinuation(int /*signal*/) {
    continued = 1;
}

// The next wait ends; that is all.
void Wake(int /*signal*/) {}

// Without SA_RESTART: a wait in progress ends.
void Catch(int signal, void (*note)(int)) {
    struct sigaction action {};
    action.sa_handler = note;
    sigaction(signal, &action, nullptr);
}

bool IsIgnored(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

bool HasTerminal() {
    const int terminal = open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal >= 0) close(terminal);
    return terminal >= 0;
}

bool Take(volatile std::sig_atomic_t& note) {
    const bool taken = note != 0;
    note = 0;
    return taken;
}

}  // namespace

void CatchInterrupts() {
    Catch(SIGINT, NoteInterrupt);
    Catch(SIGTERM, NoteInterrupt);
    if (!IsIgnored(SIGHUP)) Catch(SIGHUP, NoteInterrupt);
    // A file that may not grow is told by the write that fails.
    signal(SIGXFSZ, SIG_IGN);
}

bool Interrupted() {
    return interrupted != 0;
}

void TakeHangupsForTheLog() {
    if (!HasTerminal() && !IsIgnored(SIGHUP)) Catch(SIGHUP, NoteHangup);
}

bool TakeHangup() {
    return Take(hungUp);
}

void HoldTerminalSignals() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGWINCH, SIGTSTP, SIGCONT})
        sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &waitingMask);
    holding = true;
    Catch(SIGWINCH, Wake);
    Catch(SIGCONT, NoteContinuation);
}

bool TakeContinuation() {
    return Take(continued);
}

void Await(std::vector<pollfd>& watched, std::chrono::milliseconds longest) {
    const auto wait = std::max(longest, std::chrono::milliseconds(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
    const timespec limit{seconds.count(), std::chrono::nanoseconds(wait - seconds).count()};
    ppoll(watched.data(), watched.size(), &limit, holding ? &waitingMask : nullptr);
}

}  // namespace tool
