// wbalance-sim control from outside: what it reaches, what it changes, and what it complains of.

#include <gmock/gmock.h>
#include <unistd.h>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kOtherBalance;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

const std::string kTool = WBALANCE_SIM;
const std::string kHost = SERIAL_HOST;

/// For shell scripts: "$sim" is wbalance-sim, "$balance" and "$other" are instruments, and "$ask
/// DEVICE SETTINGS COMMAND" asks one.
const std::string kNames = "export sim=" + kTool + " ask=" + kHost + " balance=" + kBalance +
                           " other=" + kOtherBalance + "; ";

/// Runs a shell script under wbalance-sim.
Ran Under(const std::string& instruments, const std::string& script) {
    return RunShell(kNames + "$sim " + instruments + " -- sh -c '" + script + "'");
}

/// A directory of its own for temporary files: no other run of wbalance-sim is found in it.
class Quarters {
 public:
    Quarters() { EXPECT_NE(mkdtemp(path_), nullptr); }
    ~Quarters() { RunShell(std::string("rm -r ") + path_); }
    Quarters(const Quarters&) = delete;
    Quarters& operator=(const Quarters&) = delete;

    Ran Run(const std::string& script) const {
        return RunShell(kNames + "export TMPDIR=" + path_ + "; cd $TMPDIR; " + script);
    }

 private:
    char path_[32] = "/tmp/wbalance-test-XXXXXX";
};

}  // namespace

TEST(Control, A_load_that_is_put_on_is_weighed) {
    const Ran ran =
        Under("$balance --load 5", "$sim control load 12.34; $ask /dev/ttyS0 2400,7E1 S");
    EXPECT_EQ(ran.output, "S S      12.34 g\r\n");
}

TEST(Control, Status_says_what_runs_and_what_it_shows) {
    const Ran ran =
        Under("$balance --load 5 --fault silent , $other --port 1 --usb", "$sim control status");
    EXPECT_EQ(ran.output,
              "/dev/ttyS0: " + kBalance + " shows 5.00 g; the host's port is closed; silent\n" +
                  "/dev/ttyUSB1: " + kOtherBalance + " shows 0.00 g; the host's port is closed\n");
}

TEST(Control, Of_several_instruments_one_is_chosen_by_its_port) {
    const Ran ran = Under("$balance , $balance --port 1 --usb",
                          "$sim control --port ttyUSB1 switch serial-number=7777777;"
                          "$sim control --port /dev/ttyS0 switch serial-number=5555555;"
                          "$ask /dev/ttyUSB1 2400,7E1 I4; $ask /dev/ttyS0 2400,7E1 I4");
    EXPECT_EQ(ran.output, "I4 A \"7777777\"\r\nI4 A \"5555555\"\r\n");
}

TEST(Control, A_load_may_be_below_zero) {
    const Ran ran = Under("$balance", "$sim control load -5.5; $ask /dev/ttyS0 2400,7E1 S");
    EXPECT_EQ(ran.output, "S S      -5.50 g\r\n");
}

TEST(Control, An_adapter_is_pulled_out_and_comes_back_elsewhere) {
    const Ran ran = Under("$balance --usb --load 3",
                          "$sim control unplug; $ask /dev/ttyUSB0 2400,7E1 S;"
                          "$sim control plug-in as ttyUSB1; $ask /dev/ttyUSB1 2400,7E1 S");
    EXPECT_EQ(ran.output, "No such file or directory\n/dev/ttyUSB1\nS S       3.00 g\r\n");
}

TEST(Control, Faults_begin_and_end) {
    const Ran ran = Under("$balance --load 3",
                          "$sim control fault overload; $ask /dev/ttyS0 2400,7E1 S;"
                          "$sim control end; $ask /dev/ttyS0 2400,7E1 S");
    EXPECT_EQ(ran.output, "S +\r\nS S       3.00 g\r\n");
}

TEST(Control, What_cannot_be_done_is_refused_with_what_can) {
    const std::pair<const char*, std::string> cases[] = {
        {"", "what is to change? See wbalance-sim control --help"},
        {"laod 5", "\"laod\" is nothing that can be done; there are drift, end, fault, load, "},
        {"--port ttyS0 load heavy", "\"load heavy\": it is written load GRAMS, such as"},
        {"--port ttyS0 switch speed=2", "this instrument has no switch \"speed\"; it has model"},
        {"load 5", "which instrument? Choose one with --port: /dev/ttyS0 (" + kBalance +
                       "), /dev/ttyS1 (" + kOtherBalance + ")"},
        {"--port ttyS7 load 5", "no instrument is at ttyS7; there are /dev/ttyS0 (" + kBalance +
                                    "), /dev/ttyS1 (" + kOtherBalance + ")"},
        {"--colour status", "\"--colour\" is nothing"},
        {"--control /no/such/place status",
         "no wbalance-sim runs at /no/such/place; start one with --control /no/such/place"},
    };
    for (const auto& [arguments, message] : cases) {
        const Ran ran =
            Under("$balance , $other --port 1", std::string("$sim control ") + arguments);
        EXPECT_THAT(ran.errors, StartsWith("wbalance-sim: " + message)) << arguments;
        EXPECT_EQ(ran.output, "") << arguments;
        EXPECT_EQ(ran.exitCode, 125) << arguments;
    }
}

TEST(Control, From_anywhere_the_only_run_of_the_user_is_found) {
    const Ran ran = Quarters().Run(
        "$sim $balance --load 5 --line 2400,8N1 --pty > path & until [ -s path ]; do sleep 0.05; "
        "done; until $sim control load 7; do sleep 0.05; done 2>/dev/null; "
        "until $sim control status | grep 7.00; do sleep 0.05; done; kill -TERM $!; wait $!");
    EXPECT_THAT(ran.output, MatchesRegex("/dev/pts/[0-9]+: " + kBalance + " shows 7.00 g.*\n"));
    EXPECT_EQ(ran.errors, "");
}

TEST(Control, Nothing_runs_is_said_with_how_to_start_it) {
    const Ran ran = Quarters().Run("mkdir wbalance-lines-killed; $sim control status");
    EXPECT_THAT(ran.errors,
                MatchesRegex("wbalance-sim: no wbalance-sim of yours is running; start one, such "
                             "as wbalance-sim [a-z0-9-]+ --pty\n"));
    EXPECT_EQ(ran.exitCode, 125);
}

TEST(Control, Of_several_runs_one_is_chosen_by_its_path) {
    const Quarters quarters;
    const Ran ran = quarters.Run(
        "$sim $balance --control ./one --pty > 1 & first=$!; "
        "$sim $other --control ./two --pty > 2 & second=$!; "
        "until [ -L one ] && [ -L two ]; do sleep 0.05; done; "
        "$sim control --control one load 5; $sim control --control two status; "
        "$sim control status; echo code $?; $sim $other --control one -- true; echo code $?; "
        "kill -TERM $first $second; wait; ls");
    EXPECT_THAT(ran.output, HasSubstr(kOtherBalance + " shows 0.00 g"));
    EXPECT_THAT(ran.output, HasSubstr("code 125\ncode 125\n1\n2\n"));
    EXPECT_THAT(ran.errors, HasSubstr("several wbalance-sim of yours are running; choose one:\n"
                                      "  --control /tmp/wbalance-test-"));
    EXPECT_THAT(ran.errors, HasSubstr("another wbalance-sim is controlled at one; choose another "
                                      "path\n"));
}

TEST(Control, A_path_that_a_killed_run_has_left_is_used_again) {
    const Ran ran = Quarters().Run(
        "$sim $balance --control left --pty > path & until [ -L left ]; do sleep 0.05; done; "
        "kill -KILL $!; wait $! 2>/dev/null; "
        "$sim $balance --control left -- $sim control --control left status; ls -d left path "
        "*lines*");
    EXPECT_THAT(ran.output, MatchesRegex("/dev/ttyS0: " + kBalance +
                                         " shows 0.00 g; the host's port is closed\npath\n"))
        << "and nothing of the two runs is left";
}

TEST(Control, Whatever_else_stands_at_the_path_stays) {
    const Ran ran = Quarters().Run(
        "ln -s gone link; echo mine > file; ln -s $PWD/file toFile; mkdir directory; "
        "mkdir wbalance-lines-mine; echo mine > wbalance-lines-mine/control; "
        "ln -s $PWD/wbalance-lines-mine/control toControl; "
        "for path in link file toFile directory toControl; do "
        "$sim $balance --control $path -- true || echo $path $?; done; "
        "cat toFile toControl; readlink link; ls -d directory");
    EXPECT_EQ(ran.output,
              "link 125\nfile 125\ntoFile 125\ndirectory 125\ntoControl 125\n"
              "mine\nmine\ngone\ndirectory\n");
    EXPECT_THAT(ran.errors, StartsWith("wbalance-sim: link exists already and is no link that a "
                                       "wbalance-sim of yours has left; choose another path\n"));
}

TEST(Control, A_path_that_can_not_be_made_is_said) {
    const Ran ran =
        Quarters().Run("$sim $balance --control no/such/place -- true; $sim $balance --control " +
                       std::string(300, 'x') + " -- true");
    EXPECT_THAT(ran.errors,
                HasSubstr("wbalance-sim: cannot be controlled at no/such/place: No such "
                          "file or directory\n"));
    EXPECT_THAT(ran.errors, HasSubstr("xxx: File name too long\n"));
}

TEST(Control, A_link_that_leads_elsewhere_by_now_is_left_alone_at_the_end) {
    const Ran ran =
        Quarters().Run("$sim $balance --control mine -- ln -sf elsewhere mine; readlink mine");
    EXPECT_EQ(ran.output, "elsewhere\n");
}

TEST(Control, A_path_with_a_long_name_is_reached) {
    const std::string name(250, 'x');
    const Ran ran = Quarters().Run("$sim $balance --control " + name +
                                   " -- $sim control --control " + name + " status");
    EXPECT_THAT(ran.output, StartsWith("/dev/ttyS0: " + kBalance + " shows"));
}

TEST(Control, Of_a_killed_run_nothing_is_left_when_the_next_begins) {
    const Ran ran = Quarters().Run(
        "$sim $balance --pty > path & until [ -s path ]; do sleep 0.05; done; kill -KILL $!; "
        "wait $! 2>/dev/null; $sim $balance --pty > other & until [ -s other ]; do sleep 0.05; "
        "done; "
        "$sim $balance -- sh -c \"ls -d wbalance-lines-* | wc -l\"; kill $!; wait $!; ls");
    EXPECT_EQ(ran.output, "2\nother\npath\n") << "the live ones are left alone";
}

TEST(Control, A_program_that_outlives_its_run_finds_no_port) {
    const Ran ran = Quarters().Run(
        "$sim $balance -- sh -c 'kill -KILL $PPID; sleep 0.1; $sim $balance --port 9 -- true; "
        "ls $WBALANCE_VIRTUAL_LINES; " +
        kHost + " /dev/ttyS0 2400,7E1 S' 2>&1; true");
    EXPECT_THAT(ran.output, HasSubstr("No such file or directory\n"));
}

TEST(Control, A_place_with_a_long_name_is_no_obstacle) {
    const std::string name(200, 'x');
    const Ran ran = Quarters().Run("mkdir " + name + "; export TMPDIR=$TMPDIR/" + name +
                                   "; $sim $balance -- $sim control status");
    EXPECT_THAT(ran.output, StartsWith("/dev/ttyS0: " + kBalance + " shows"));
}

TEST(Control, Help_has_examples) {
    const Ran ran = RunShell(kTool + " control --help");
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_THAT(ran.output, HasSubstr("Examples:\n  wbalance-sim control load 100\n"));
}

TEST(Control, An_instrument_on_a_terminal_comes_back_under_a_path_that_is_printed) {
    const Ran ran = Quarters().Run(
        "$sim $balance --load 5 --line 2400,8N1 --pty > paths & until [ -s paths ]; do sleep 0.05; "
        "done; "
        "until $sim control status; do sleep 0.05; done >/dev/null 2>&1; "
        "exec 3<>$(cat paths); $sim control unplug; $sim control plug-in; "
        "until [ $(wc -l < paths) = 2 ]; do sleep 0.05; done; tail -n 1 paths; "
        "kill -TERM $!; wait $!; echo code $?");
    EXPECT_THAT(ran.output, MatchesRegex("(/dev/pts/[0-9]+)\n/dev/pts/[0-9]+\ncode 0\n"));
    EXPECT_EQ(ran.errors, "");
}
