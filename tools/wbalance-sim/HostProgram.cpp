#include "HostProgram.h"

#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace {

constexpr int kCannotRun = 126;
constexpr int kNotFound = 127;
constexpr int kEndedBySignal = 128;

sigset_t SignalSet(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : signals)
        sigaddset(&set, signal);
    return set;
}

sigset_t PassedOnSignals() {
    return SignalSet({SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2});
}

sigset_t SetOfHeldSignals() {
    sigset_t held = PassedOnSignals();
    sigaddset(&held, SIGCHLD);
    return held;
}

std::string VirtualLineObject() {
    const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const char* libraries : {WBALANCE_INSTALLED_LIBRARIES, WBALANCE_BUILT_LIBRARIES}) {
        const auto object = here / libraries / WBALANCE_VIRTUAL_LINE_OBJECT;
        if (std::filesystem::exists(object)) return std::filesystem::canonical(object).string();
    }
    throw std::runtime_error(WBALANCE_VIRTUAL_LINE_OBJECT
                             " is neither where it is installed nor where it is built; install it "
                             "beside libwbalance.so");
}

void Preload(const std::string& object) {
    if (object.find_first_of(" :") != std::string::npos)
        throw std::runtime_error("the loader cannot preload " + object +
                                 ": move it to a path without blanks and colons");
    const char* before = ::getenv("LD_PRELOAD");
    const std::string all = before && *before ? std::string(before) + ":" + object : object;
    ::setenv("LD_PRELOAD", all.c_str(), 1);
}

int Spawn(const std::vector<std::string>& command, int* process) {
    std::vector<char*> words;
    for (const auto& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    const sigset_t none = SignalSet({});
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const int error =
        ::posix_spawnp(process, words[0], nullptr, &attributes, words.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    return error;
}

}  // namespace

HostProgram::HostProgram(const std::vector<std::string>& command) : name_(command.front()) {
    const char* before = ::getenv("LD_PRELOAD");
    const std::string kept = before ? before : "";
    Preload(VirtualLineObject());
    startError_ = Spawn(command, &process_);
    before ? ::setenv("LD_PRELOAD", kept.c_str(), 1) : ::unsetenv("LD_PRELOAD");
}

int HostProgram::ExitCode() {
    if (startError_ != 0) {
        std::cerr << "wbalance-sim: cannot run " << name_ << ": " << ::strerror(startError_)
                  << "\n";
        return startError_ == ENOENT ? kNotFound : kCannotRun;
    }
    const sigset_t awaited = SetOfHeldSignals();
    for (;;) {
        siginfo_t received = {};
        const int signal = ::sigwaitinfo(&awaited, &received);
        int status = 0;
        if (::waitpid(process_, &status, WNOHANG) == process_)
            return WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
        // The terminal's Ctrl-C reaches the program by itself; that a terminal was closed is said
        // to the leader of its session only.
        const bool fromKeyboard = received.si_code == SI_KERNEL && signal != SIGHUP;
        if (signal > 0 && signal != SIGCHLD && !fromKeyboard) ::kill(process_, signal);
    }
}

void HostProgram::HoldSignals() {
    const sigset_t held = SetOfHeldSignals();
    ::sigprocmask(SIG_BLOCK, &held, nullptr);
}

void HostProgram::ReleaseSignals() {
    const sigset_t held = SetOfHeldSignals();
    const timespec atOnce = {};
    while (::sigtimedwait(&held, nullptr, &atOnce) > 0) {  // came before
    }
    ::sigprocmask(SIG_UNBLOCK, &held, nullptr);
}

void HostProgram::WaitForEndingSignal() {
    const sigset_t ending = SignalSet({SIGHUP, SIGINT, SIGQUIT, SIGTERM});
    ::sigwaitinfo(&ending, nullptr);
}
