// monitor on the screen of a real terminal emulator: what stands there at any size, and what is
// left.

#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <thread>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kOtherBalance;
using testing::HasSubstr;
using testing::Not;

namespace {

// bash in a terminal of that size, which shows 1,000 lines that have left its top.
class Screen {
 public:
    Screen(int columns, int rows) {
        settings_.Write("set -g status off\nset -g history-limit 1000\n");
        Tmux("-f " + settings_.Path() + " new-session -d" + SizeText(columns, rows) +
             " 'PS1=\"ready \" exec bash --norc --noprofile -i'");
        AwaitPrompt();
        Type("stty -g >" + before_.Path() + "; clear; tput clear");
        AwaitPrompt();
        Tmux("clear-history");
    }
    ~Screen() {
        Tmux("kill-server 2>/dev/null");
        std::remove((socket_.Path() + "-tmux").c_str());
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    void Type(const std::string& line) const {
        Tmux("send-keys -l '" + line + "'");
        Press("Enter");
    }
    void Press(const std::string& key) const { Tmux("send-keys " + key); }
    void Resize(int columns, int rows) const { Tmux("resize-window" + SizeText(columns, rows)); }

    // The rows that are not empty, from top to bottom; a blank at their end is not seen.
    std::vector<std::string> Lines() const {
        std::istringstream text(Tmux("capture-pane -p").output);
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            if (!line.empty()) lines.push_back(line);
        }
        return lines;
    }
    std::string Text() const { return Tmux("capture-pane -p").output; }
    std::string Ask(const std::string& what) const {
        return Tmux("display-message -p '#{" + what + "}'").output;
    }

    bool Shows(const std::function<bool()>& condition) const {
        for (int i = 0; i < 300; ++i) {
            if (condition()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return false;
    }
    bool Shows(const std::string& text) const {
        return Shows([&] { return Text().find(text) != std::string::npos; });
    }
    // Two or more: the picture has been drawn anew.
    bool ShowsReadings() const {
        return Shows([this] {
            const std::string text = Text();
            const std::size_t at = text.find("  n ");
            return at != std::string::npos && std::atoi(text.c_str() + at + 4) >= 2;
        });
    }
    // Until a prompt waits for a command.
    bool AwaitPrompt() const {
        return Shows([this] {
            const auto lines = Lines();
            return !lines.empty() && lines.back() == "ready";
        });
    }

    // Nothing of the terminal is other than it was: cursor, second screen, line discipline.
    void ExpectAsBefore() const {
        EXPECT_EQ(Ask("cursor_flag"), "1\n");
        EXPECT_EQ(Ask("alternate_on"), "0\n");
        EXPECT_EQ(Ask("wrap_flag"), "1\n");
        const TemporaryFile after;
        Type("stty -g >" + after.Path() + "; echo written");
        EXPECT_TRUE(Shows("written"));
        EXPECT_TRUE(Shows([&] { return after.Text() == before_.Text(); })) << after.Text();
    }

 private:
    Ran Tmux(const std::string& command) const {
        return RunShell("LC_ALL=C.UTF-8 TERM=xterm TMUX= " TMUX " -u -S " + socket_.Path() +
                        "-tmux " + command);
    }
    static std::string SizeText(int columns, int rows) {
        return " -x " + std::to_string(columns) + " -y " + std::to_string(rows);
    }

    const TemporaryFile socket_;
    const TemporaryFile settings_;
    const TemporaryFile before_;
};

const std::string kSimulated = WBALANCE_SIM " " + kBalance + " --load 12.34 -- ";

// The simulated one, and others whose adapters are not there.
std::string MonitorOf(int balances) {
    std::string command = kSimulated + WBALANCE " monitor -t 0 -i 0.2 " + kBalance + "@0";
    for (int i = 1; i < balances; ++i)
        command += " " + kOtherBalance + "@ttyUSB" + std::to_string(100 + i);
    return command;
}

// In a file, for a line that is typed would itself stand on the screen.
class Script {
 public:
    explicit Script(const std::string& command) { file_.Write("clear\nexec " + command + "\n"); }
    std::string Call() const { return "bash " + file_.Path(); }

 private:
    const TemporaryFile file_;
};

struct Sized {
    int columns;
    int rows;
    int balances;
};

class AtAnySize : public testing::TestWithParam<Sized> {};

TEST_P(AtAnySize, Every_line_stands_once_and_none_leaves_the_top) {
    const auto [columns, rows, balances] = GetParam();
    const Screen screen(columns, rows);
    const Script monitor(MonitorOf(balances));
    screen.Type(monitor.Call());
    EXPECT_TRUE(screen.Shows("12.34")) << screen.Text();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_EQ(screen.Ask("history_size"), "0\n");
    const auto lines = screen.Lines();
    EXPECT_LT(lines.size(), static_cast<std::size_t>(rows));
    int named = 0;
    int more = 0;
    for (const auto& line : lines) {
        // A name, whole or cut at either end.
        if (line.rfind(kBalance.substr(0, 7), 0) == 0 || line.rfind(kOtherBalance, 0) == 0 ||
            line[0] == '<')
            ++named;
        if (line.rfind("and ", 0) == 0) more = std::atoi(line.c_str() + 4);
    }
    EXPECT_EQ(named + more, balances) << screen.Text();
    screen.Press("C-c");
    EXPECT_TRUE(screen.AwaitPrompt()) << screen.Text();
    screen.ExpectAsBefore();
}

INSTANTIATE_TEST_SUITE_P(Screen, AtAnySize,
                         testing::Values(Sized{20, 5, 1}, Sized{20, 5, 4}, Sized{20, 5, 30},
                                         Sized{40, 12, 1}, Sized{40, 12, 4}, Sized{40, 12, 30},
                                         Sized{80, 24, 1}, Sized{80, 24, 4}, Sized{80, 24, 30},
                                         Sized{200, 60, 1}, Sized{200, 60, 4}, Sized{200, 60, 30}),
                         [](const auto& each) {
                             return std::to_string(each.param.balances) + "_in_" +
                                    std::to_string(each.param.columns) + "x" +
                                    std::to_string(each.param.rows);
                         });

TEST(Screen, Follows_the_window_and_cuts_a_lost_balances_sentence) {
    const Screen screen(80, 24);
    const Script monitor(MonitorOf(4));
    screen.Type(monitor.Call());
    EXPECT_TRUE(screen.Shows("12.34 g")) << screen.Text();
    EXPECT_EQ(screen.Lines()[4],
              "  LOST: /dev/ttyUSB101: there is no such port; is the adapter plugged in? `wba>")
        << screen.Text();

    screen.Resize(20, 5);
    EXPECT_TRUE(screen.Shows([&screen] {
        const auto lines = screen.Lines();
        return lines.size() == 4 && lines[0].rfind("</ttyS0 12.34 g ", 0) == 0 &&
               lines[1] == "<USB101 LOST: /dev>" && lines[2] == "<USB102 LOST: /dev>" &&
               lines[3] == "<USB103 LOST: /dev>";
    })) << screen.Text();

    screen.Resize(200, 60);
    EXPECT_TRUE(screen.Shows([&screen] {
        const auto lines = screen.Lines();
        return lines.size() == 15 && lines[0] == kBalance + " /dev/ttyS0" &&
               lines[3] == "      ||_ . _|  | g" && lines[6] == kOtherBalance + " /dev/ttyUSB101";
    })) << screen.Text();
}

TEST(Screen, Comes_back_below_the_shells_lines_after_Ctrl_Z) {
    const Screen screen(80, 24);
    const Script monitor(MonitorOf(1));
    screen.Type(monitor.Call());
    EXPECT_TRUE(screen.ShowsReadings()) << screen.Text();
    screen.Press("C-z");
    EXPECT_TRUE(screen.Shows("Stopped")) << screen.Text();
    EXPECT_TRUE(screen.AwaitPrompt()) << screen.Text();
    screen.ExpectAsBefore();
    screen.Type("clear; fg");
    EXPECT_TRUE(screen.Shows("drift")) << screen.Text();
    EXPECT_EQ(screen.Lines()[1], kBalance + " /dev/ttyS0") << screen.Text();
    screen.Press("C-c");
    EXPECT_TRUE(screen.Shows("lost 0 times")) << screen.Text();
    screen.ExpectAsBefore();
}

// At the bottom of the screen each moves the picture up.
TEST(Screen, Keeps_one_picture_however_often_Enter_is_pressed) {
    const Screen screen(80, 24);
    const Script monitor(MonitorOf(2));
    screen.Type(monitor.Call());
    EXPECT_TRUE(screen.ShowsReadings()) << screen.Text();
    for (int i = 0; i < 40; ++i)
        screen.Press("Enter");
    screen.Press("a Enter C-d b Enter");
    EXPECT_TRUE(screen.Shows([&screen] {
        int named = 0;
        for (const auto& line : screen.Lines())
            named += line.rfind(kBalance, 0) == 0 ? 1 : 0;
        return named == 1 && screen.Text().find("\nb") == std::string::npos;
    })) << screen.Text();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_EQ(screen.Lines()[0], kBalance + " /dev/ttyS0") << screen.Text();
    screen.Press("C-c");
    EXPECT_TRUE(screen.Shows("lost 0 times")) << screen.Text();
    screen.ExpectAsBefore();
}

TEST(Screen, Is_the_shells_while_the_monitor_runs_in_the_background) {
    const Screen screen(80, 24);
    const Script monitor(MonitorOf(1));
    screen.Type(monitor.Call() + " &");
    std::this_thread::sleep_for(std::chrono::seconds(2));
    EXPECT_THAT(screen.Text(), Not(HasSubstr(kBalance)));
    screen.Type("fg");
    EXPECT_TRUE(screen.Shows(kBalance + " /dev/ttyS0")) << screen.Text();
}

TEST(Screen, Is_left_as_it_was_by_every_end) {
    for (const char* end :
         {"kill -INT $monitor", "kill -TERM $monitor", "kill -HUP $monitor", "kill -KILL $monitor",
          "pkill -KILL -P $monitor; sleep 2; kill -INT $monitor"}) {
        const Screen screen(80, 24);
        const TemporaryFile number;
        const Script monitor(kSimulated + "sh -c 'echo $$ >" + number.Path() +
                             "; exec " WBALANCE " monitor -i 0.2 -t 0 " + kBalance + "@0'");
        screen.Type(monitor.Call());
        EXPECT_TRUE(screen.ShowsReadings()) << screen.Text();
        RunShell("monitor=$(cat " + number.Path() + "); " + end);
        EXPECT_TRUE(screen.AwaitPrompt()) << end << "\n" << screen.Text();
        screen.ExpectAsBefore();
    }
}

}  // namespace
