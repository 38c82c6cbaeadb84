#include "Interrupt.h"

#include <csignal>

namespace tool {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void Note(int /*signal*/) {
    interrupted = 1;
}

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = Note;  // without SA_RESTART: a wait in progress ends
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    struct sigaction before {};
    sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(SIGHUP, &action, nullptr);
}

bool Interrupted() {
    return interrupted != 0;
}

}  // namespace tool
