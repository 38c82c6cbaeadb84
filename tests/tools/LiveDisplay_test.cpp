// monitor on a terminal: the live display, as a user at a pseudo-terminal sees it.

#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>

#include "Examples.h"
#include "Facts.h"

using examples::kBalance;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

// A shell command on a terminal of its own.
class OnTerminal {
 public:
    explicit OnTerminal(const std::string& command) {
        child_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (child_ == 0) {
            execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            _exit(127);
        }
    }
    // Whatever still runs ends with its terminal.
    ~OnTerminal() {
        if (terminal_ >= 0) Close();
    }
    OnTerminal(const OnTerminal&) = delete;
    OnTerminal& operator=(const OnTerminal&) = delete;

    // Reads until the text has been seen; false when it does not come.
    bool SeesSoon(const std::string& text) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (seen_.find(text) == std::string::npos) {
            if (std::chrono::steady_clock::now() > end || !Read()) return false;
        }
        return true;
    }

    void PressCtrlC() { EXPECT_EQ(write(terminal_, "\x03", 1), 1); }

    // Reads to the end; the exit code.
    int End() {
        while (Read()) {
        }
        return Close();
    }

    // Closes the terminal, as a window is closed, and waits for the end; the exit code.
    int Close() {
        close(terminal_);
        terminal_ = -1;
        int status = 0;
        waitpid(child_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const std::string& Seen() const { return seen_; }

 private:
    bool Read() {
        pollfd watched{terminal_, POLLIN, 0};
        if (poll(&watched, 1, 60000) <= 0) return false;
        char bytes[4096];
        const ssize_t count = read(terminal_, bytes, sizeof bytes);
        if (count <= 0) return false;
        seen_.append(bytes, static_cast<std::size_t>(count));
        return true;
    }

    int terminal_ = -1;
    pid_t child_ = -1;
    std::string seen_;
};

constexpr int kEndedAsItsReaderHas = 128 + SIGPIPE;
const std::string kMonitor = WBALANCE " monitor " + kBalance + "@0 -i 0 -t 0";

std::string Monitor(const std::string& instrument) {
    return "exec " WBALANCE_SIM " " + instrument + " -- " + kMonitor;
}

TEST(LiveDisplay, Shows_the_weight_large_with_its_state_and_its_statistics) {
    OnTerminal monitor(Monitor(kBalance + " --load 12.34"));
    EXPECT_TRUE(monitor.SeesSoon("n 3 ")) << monitor.Seen();
    // The top of the digits 1, 2, 3 and 4.
    EXPECT_THAT(monitor.Seen(), HasSubstr(kBalance + " /dev/ttyS0\x1b[K\r\n"));
    EXPECT_THAT(monitor.Seen(), HasSubstr(" g\x1b[K\r\n  stable, steady\x1b[K\r\n"));
    EXPECT_THAT(monitor.Seen(),
                HasSubstr("min 12.34  max 12.34  mean 12.340  sd 0.000  drift +0.000 g/min"));
}

TEST(LiveDisplay, Is_drawn_over_itself_and_changes_no_mode_of_the_terminal) {
    OnTerminal monitor(Monitor(kBalance + " --load 12.34"));
    EXPECT_TRUE(monitor.SeesSoon("n 2 ")) << monitor.Seen();
    monitor.PressCtrlC();
    EXPECT_EQ(monitor.End(), 0);
    EXPECT_THAT(monitor.Seen(), HasSubstr("A" + kBalance + " /dev/ttyS0"));
    EXPECT_THAT(monitor.Seen(), Not(HasSubstr("\x1b[?")));
    EXPECT_THAT(monitor.Seen(), EndsWith(", lost 0 times\r\n"));
}

TEST(LiveDisplay, Ends_with_the_window_that_it_is_drawn_in) {
    OnTerminal monitor(Monitor(kBalance + " --load 12.34"));
    EXPECT_TRUE(monitor.SeesSoon("n 2 ")) << monitor.Seen();
    // As at Ctrl-C, unless it draws before it notices.
    EXPECT_THAT(monitor.Close(), testing::AnyOf(0, kEndedAsItsReaderHas));
}

TEST(LiveDisplay, Ends_with_its_window_also_where_a_closed_one_is_ignored) {
    OnTerminal monitor("trap '' HUP; " + Monitor(kBalance + " --load 12.34"));
    EXPECT_TRUE(monitor.SeesSoon("n 2 ")) << monitor.Seen();
    EXPECT_EQ(monitor.Close(), kEndedAsItsReaderHas);
}

TEST(LiveDisplay, Says_that_a_balance_is_lost_instead_of_its_last_weight) {
    OnTerminal monitor(Monitor(kBalance + " --load 12.34 --fault unplug@2s"));
    EXPECT_TRUE(monitor.SeesSoon("LOST: ")) << monitor.Seen();
    const std::string picture = monitor.Seen().substr(monitor.Seen().rfind(kBalance));
    EXPECT_THAT(picture, Not(HasSubstr(" g\x1b[K")));
}

TEST(LiveDisplay, Says_that_the_balance_is_overloaded_instead_of_a_weight) {
    OnTerminal monitor(Monitor(kBalance + " --fault overload"));
    EXPECT_TRUE(monitor.SeesSoon("overload: more is on the pan")) << monitor.Seen();
    EXPECT_THAT(monitor.Seen(), Not(HasSubstr(" g\x1b[K")));
}

TEST(FactoryReset, Ctrl_C_at_its_question_is_an_interruption_and_sends_nothing) {
    OnTerminal reset("exec " WBALANCE " factory-reset -d " + facts::FirstWith("factory-reset"));
    EXPECT_TRUE(reset.SeesSoon("[y/N] ")) << reset.Seen();
    reset.PressCtrlC();
    EXPECT_EQ(reset.End(), 130);
    EXPECT_THAT(reset.Seen(), EndsWith("wbalance: interrupted; nothing was sent\r\n"));
}

}  // namespace
