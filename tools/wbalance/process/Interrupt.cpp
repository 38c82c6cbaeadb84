#include "Interrupt.h"

#include <csignal>
#include <initializer_list>

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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

bool Interrupted() {
    return interrupted != 0;
}

}  // namespace tool
