// wbalance-sim from outside: its command line, its exit codes and what a program meets under it.

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "Examples.h"
#include "TemporaryFile.h"

using examples::kBalance;
using examples::kOtherBalance;
using examples::kThirdBalance;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

const std::string kTool = WBALANCE_SIM;
const std::string kHost = SERIAL_HOST;

struct Ran {
    int exitCode = -1;
    std::string output;  ///< standard output and standard error
};

Ran RunCommand(const std::string& command) {
    FILE* pipe = ::popen(("{ " + command + "; } 2>&1").c_str(), "r");
    Ran ran;
    std::array<char, 4096> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        ran.output.append(buffer.data(), count);
    const int status = ::pclose(pipe);
    ran.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ran;
}

Ran Sim(const std::string& arguments) {
    return RunCommand(kTool + " " + arguments);
}

/// The programs where everybody can read them: a build may be in a home that is root's alone.
class OrdinaryUser {
 public:
    OrdinaryUser() {
        using Copy = std::pair<fs::path, fs::path>;
        for (const auto& [program, place] :
             {Copy{kTool, simulator_}, Copy{kHost, host_}, Copy{VIRTUAL_LINE, object_}}) {
            fs::create_directories(place.parent_path());
            fs::copy_file(program, place);
        }
        fs::permissions(directory_, fs::perms(0755));
    }
    ~OrdinaryUser() { fs::remove_all(directory_); }

    /// Runs the simulator with a host as nobody in particular, also when the tests run as root.
    Ran Sim(const std::string& instrument, const std::string& hostArguments) const {
        const char* nobody =
            ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
        return RunCommand(nobody + simulator_.string() + " " + instrument + " -- " +
                          host_.string() + " " + hostArguments);
    }

 private:
    static fs::path MakeDirectory() {
        std::string name = (fs::temp_directory_path() / "wbalance-user-XXXXXX").string();
        return ::mkdtemp(name.data());
    }

    const fs::path directory_ = MakeDirectory();
    const fs::path simulator_ = directory_ / "tools/wbalance-sim/wbalance-sim";
    const fs::path object_ = directory_ / "simulator" / fs::path(VIRTUAL_LINE).filename();
    const fs::path host_ = directory_ / "host";
};

}  // namespace

TEST(WbalanceSim, A_program_reads_the_load_at_the_instruments_settings) {
    const Ran ran = Sim(kBalance + " --load 12.34 -- " + kHost + " /dev/ttyS0 2400,7E1 S");
    EXPECT_THAT(ran.output, HasSubstr("S S      12.34 g\r\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(WbalanceSim, The_port_may_have_any_number_and_be_a_usb_adapter) {
    EXPECT_THAT(Sim(kBalance + " --port 3 --load 1 -- " + kHost + " /dev/ttyS3 2400,7E1 S").output,
                HasSubstr("S S       1.00 g\r\n"));
    EXPECT_THAT(
        Sim(kBalance + " --port 7 --usb --load 1 -- " + kHost + " /dev/ttyUSB7 2400,7E1 S").output,
        HasSubstr("S S       1.00 g\r\n"));
}

TEST(WbalanceSim, A_device_that_is_not_served_is_missing_as_it_is_without_the_simulator) {
    // The lock file is the system's: nobody else may be at the same device at the same time.
    const std::string missing = "/dev/ttyUSB" + std::to_string(10'000 + ::getpid() % 80'000);
    const Ran ran = Sim(kBalance + " -- " + kHost + " " + missing + " 2400,7E1 S");
    EXPECT_THAT(ran.output, HasSubstr("No such file or directory"));
    EXPECT_EQ(ran.exitCode, 1);
}

TEST(WbalanceSim, An_ordinary_user_needs_no_right_to_ports_and_lock_files) {
    const Ran ran = OrdinaryUser().Sim(kBalance + " --load 12.34", "/dev/ttyS0 2400,7E1 S");
    EXPECT_THAT(ran.output, HasSubstr("S S      12.34 g\r\n"));
}

TEST(WbalanceSim, A_port_whose_holder_was_killed_opens_again) {
    const Ran ran = OrdinaryUser().Sim(kBalance + " --load 12.34", "/dev/ttyS0 after-kill");
    EXPECT_THAT(ran.output, HasSubstr("S S      12.34 g\r\n"));
}

TEST(WbalanceSim, A_port_that_another_process_holds_is_busy_for_an_ordinary_user) {
    const Ran ran = OrdinaryUser().Sim(kBalance, "/dev/ttyS0 while-held");
    EXPECT_THAT(ran.output, HasSubstr("Device or resource busy"));
}

TEST(WbalanceSim, Two_programs_at_once_each_have_their_own_ttyUSB0) {
    const std::string each = kTool + " " + kBalance + " --usb --fault late=400ms --load ";
    const std::string asking = " -- " + kHost + " /dev/ttyUSB0 2400,7E1 S";
    const Ran ran = RunCommand(each + "1.5" + asking + " & " + each + "2.5" + asking + "; wait");
    EXPECT_THAT(ran.output, HasSubstr("S S       1.50 g"));
    EXPECT_THAT(ran.output, HasSubstr("S S       2.50 g"));
}

TEST(WbalanceSim, A_plain_shell_with_stty_is_served_too) {
    const Ran ran =
        Sim(kBalance +
            " --load 12.34 -- sh -c '"
            "stty -F /dev/ttyS0 2400 cs7 parenb -parodd raw -echo; stty -F /dev/ttyS0 -a; "
            "exec 3<>/dev/ttyS0; printf \"S\\r\\n\" >&3; head -n 1 <&3'");
    EXPECT_THAT(ran.output, HasSubstr("speed 2400 baud"));
    EXPECT_THAT(ran.output, HasSubstr("parenb -parodd -cmspar cs7"));
    EXPECT_THAT(ran.output, HasSubstr("S S      12.34 g\r\n"));
}

TEST(WbalanceSim, The_node_looks_like_a_serial_port_of_the_group_dialout) {
    EXPECT_EQ(Sim(kBalance + " -- stat -c '%F %t:%T %a %g' /dev/ttyS0").output,
              "character special file 4:40 660 20\n");
    EXPECT_EQ(Sim(kBalance + " --usb --port 1 -- stat -c '%F %t:%T' /dev/ttyUSB1").output,
              "character special file bc:1\n");
}

TEST(WbalanceSim, The_instruments_own_settings_can_be_chosen) {
    const Ran ran =
        Sim(kBalance + " --line 9600,8N1 --load 3 -- " + kHost + " /dev/ttyS0 9600,8N1 S");
    EXPECT_THAT(ran.output, HasSubstr("S S       3.00 g"));
}

namespace {

const std::string kOtherSettings =
    "wbalance-sim: the host speaks at 9600,8N1 on /dev/ttyS0, but " + kBalance +
    " listens at "
    "2400,7E1; set the host to 2400,7E1, or the instrument to what the host has with --line "
    "9600,8N1\n";

/// Runs a shell that sends S at each of the settings, which are words of stty.
Ran SaySAt(const std::string& instrument, const std::vector<std::string>& settings) {
    std::string words;
    for (const auto& each : settings)
        words += "stty -F /dev/ttyS0 raw -echo " + each + "; printf \"S\\r\\n\" >/dev/ttyS0; ";
    return Sim(instrument + " -- sh -c '" + words + "'");
}

}  // namespace

TEST(WbalanceSim, A_host_at_other_settings_is_told_once_what_to_do) {
    const std::string at9600 = "9600 cs8 -parenb -cstopb";
    EXPECT_EQ(SaySAt(kBalance, {at9600, at9600, at9600}).output, kOtherSettings);
}

TEST(WbalanceSim, A_host_that_agrees_or_is_not_known_to_differ_gets_no_hint) {
    const std::string at9600 = "9600 cs8 -parenb -cstopb";
    EXPECT_EQ(SaySAt(kBalance, {"2400 cs7 parenb -parodd -cstopb"}).output, "");
    EXPECT_EQ(SaySAt(kBalance + " --line 9600,8N1", {at9600}).output, "");
    EXPECT_EQ(Sim(kBalance + " -- stty -F /dev/ttyS0 raw -echo " + at9600).output, "");
    EXPECT_EQ(RunCommand(
                  "paths=$(mktemp -u); mkfifo $paths; " + kTool + " " + kBalance +
                  " --load 3 --line 2400,8N1 --pty >$paths & sim=$!; read path <$paths; rm $paths; "
                  "stty -F $path raw -echo 9600; exec 3<>$path; printf 'S\\r\\n' >&3; "
                  "head -n 1 <&3; kill -INT $sim; wait $sim")
                  .output,
              "S S       3.00 g\r\n");
}

TEST(WbalanceSim, A_pseudo_terminal_comes_with_a_hint_where_it_has_other_settings_for_good) {
    const auto served = [](const std::string& arguments) {
        return RunCommand("timeout -s INT 1 " + kTool + " " + kBalance + arguments + " --pty")
            .output;
    };
    EXPECT_THAT(served(" --line 1200,7O2"),
                testing::MatchesRegex(
                    "/dev/pts/[0-9]+\nwbalance-sim: " + kBalance +
                    " speaks at 1200,7O2, but /dev/pts/[0-9]+ is a pseudo-terminal, which "
                    "has 8 data bits without parity; where a host can not set 1200,7O2, "
                    "set it to 1200,8N2\n"));
    EXPECT_THAT(served(" --line 1200,8N2"), testing::MatchesRegex("/dev/pts/[0-9]+\n"));
}

TEST(WbalanceSim, The_hint_comes_again_for_other_wrong_settings_alone) {
    const std::string at9600 = "9600 cs8 -parenb -cstopb";
    const std::string right = "2400 cs7 parenb -parodd -cstopb";
    const std::string at4800 = "4800 cs7 parenb -parodd -cstopb";
    EXPECT_EQ(SaySAt(kBalance, {at9600, right, at9600, at4800, at9600}).output,
              kOtherSettings + "wbalance-sim: the host speaks at 4800,7E1 on /dev/ttyS0, but " +
                  kBalance +
                  " "
                  "listens at 2400,7E1; set the host to 2400,7E1, or the instrument to what the "
                  "host has with --line 4800,7E1\n");
}

TEST(WbalanceSim, The_log_says_that_the_host_is_at_other_settings) {
    EXPECT_THAT(SaySAt(kBalance + " --log -", {"9600 cs8 -parenb -cstopb"}).output,
                HasSubstr(" ! the host speaks at 9600,8N1, the instrument listens at 2400,7E1\n"));
}

TEST(WbalanceSim, Loads_and_faults_have_their_times) {
    const Ran ran = Sim(kBalance + " --load 1 --load 50@100ms --fault silent@0s+50ms -- sh -c '" +
                        std::string("sleep 2; ") + kHost + " /dev/ttyS0 2400,7E1 S'");
    EXPECT_THAT(ran.output, HasSubstr("S S      50.00 g"));
}

TEST(WbalanceSim, A_script_says_what_happens_and_when) {
    const TemporaryFile script;
    script.Write("# the parcel comes late\n0s load 1\n+100ms load 50\n0s fault silent for 50ms\n");
    const Ran ran = Sim(kBalance + " --script " + script.Path() + " -- sh -c 'sleep 2; " + kHost +
                        " /dev/ttyS0 2400,7E1 S'");
    EXPECT_THAT(ran.output, HasSubstr("S S      50.00 g"));
}

TEST(WbalanceSim, A_wrong_script_is_refused_with_the_line_before_anything_runs) {
    const TemporaryFile script;
    script.Write("0s load 1\n5s laod 50\n");
    const Ran ran = Sim(kBalance + " --script " + script.Path() + " -- echo ran");
    EXPECT_THAT(ran.output,
                StartsWith("wbalance-sim: " + script.Path() + ":2: \"laod\" is nothing that can"));
    EXPECT_EQ(ran.exitCode, 125);
    script.Write("0s switch speed=2\n");
    EXPECT_THAT(Sim(kBalance + " --script " + script.Path() + " -- echo ran").output,
                StartsWith("wbalance-sim: " + script.Path() + ":1: this instrument has no switch"));
    EXPECT_THAT(Sim(kBalance + " --script /no/such/script -- echo ran").output,
                StartsWith("wbalance-sim: the script /no/such/script: No such file"));
}

TEST(WbalanceSim, A_fault_may_be_said_in_words) {
    const Ran ran = Sim(kBalance + " --load 1 --fault 'silent at 0s for 50ms' -- sh -c '" +
                        std::string("sleep 2; ") + kHost + " /dev/ttyS0 2400,7E1 S'");
    EXPECT_THAT(ran.output, HasSubstr("S S       1.00 g"));
}

TEST(WbalanceSim, Several_instruments_each_have_their_port_load_and_switches) {
    const Ran ran = Sim(
        kBalance + " --load 5 , " + kBalance + " --port 1 --usb --load 7 --log - , " + kBalance +
        " --port 2 --with serial-number=7777777 -- sh -c '" + kHost + " /dev/ttyS0 2400,7E1 S; " +
        kHost + " /dev/ttyUSB1 2400,7E1 S; " + kHost + " /dev/ttyS2 2400,7E1 I4'");
    EXPECT_THAT(ran.output, HasSubstr("S S       5.00 g\r\n"));
    EXPECT_THAT(ran.output, HasSubstr("S S       7.00 g\r\n"));
    EXPECT_THAT(ran.output, HasSubstr("I4 A \"7777777\"\r\n"));
    EXPECT_THAT(ran.output,
                ContainsRegex("# host of /dev/ttyUSB1: 2400,7E1\n[0-9]+ /dev/ttyUSB1 > S.r.n\n"));
}

TEST(WbalanceSim, Several_instruments_on_terminals_print_their_paths_in_their_order) {
    const Ran ran = RunCommand("paths=$(mktemp -u); mkfifo $paths; " + kTool + " " + kBalance +
                               " --load 5 --line 2400,8N1 , " + kBalance +
                               " --load 7 --line 2400,8N1 --pty > $paths & "
                               "sim=$!; { read first; read second; } < $paths; rm $paths; "
                               "exec 3<>$second; printf 'S\\r\\n' >&3; head -n 1 <&3; "
                               "exec 4<>$first; printf 'S\\r\\n' >&4; head -n 1 <&4; "
                               "kill -INT $sim; wait $sim");
    EXPECT_EQ(ran.output, "S S       7.00 g\r\nS S       5.00 g\r\n");
}

TEST(WbalanceSim, The_log_shows_bytes_times_and_the_hosts_settings) {
    const Ran ran = Sim(kBalance + " --load 3 --log - -- " + kHost + " /dev/ttyS0 2400,7E1 S");
    EXPECT_THAT(ran.output, ContainsRegex("# host: 2400,7E1\n[0-9]+ > S.r.n\n"));
    EXPECT_THAT(ran.output, ContainsRegex("\n[0-9]+ < S S       3.00 g.r.n\n"));
    EXPECT_THAT(ran.output, ContainsRegex("^# wbalance record 1\n# driver: " + kBalance +
                                          "\n# port: /dev/ttyS0\n# line: 2400,7E1\n"
                                          "# date: 20[0-9-]+T[0-9:]+Z\n"));
}

TEST(WbalanceSim, A_log_on_a_full_disk_is_a_failure) {
    const Ran ran =
        Sim(kBalance + " --load 3 --log /dev/full -- " + kHost + " /dev/ttyS0 2400,7E1 S");
    EXPECT_THAT(
        ran.output,
        HasSubstr("wbalance-sim: the log /dev/full can't be written: No space left on device; "
                  "what happens until it can is missing in it\n"));
    EXPECT_THAT(ran.output,
                HasSubstr("the log /dev/full is not whole: 3 events could not be written\n"))
        << "the header, the command and the answer";
    EXPECT_EQ(ran.exitCode, 125);
}

TEST(WbalanceSim, A_log_at_the_limit_of_its_size_is_a_failure_and_the_instrument_goes_on) {
    const TemporaryFile log;
    // Ten exchanges are more than the 1,024 bytes that a file may have.
    const Ran ran =
        RunCommand("ulimit -f 1; " + kTool + " " + kBalance + " --load 3 --log " + log.Path() +
                   " -- " WBALANCE " monitor " + kBalance + "@0 -m now -i 0 -t 0 -n 10");
    EXPECT_THAT(ran.output, HasSubstr("3.00 g"));
    EXPECT_THAT(ran.output, HasSubstr("can't be written: File too large"));
    EXPECT_THAT(ran.output, HasSubstr("10 readings"));
    EXPECT_EQ(ran.exitCode, 125);
}

TEST(WbalanceSim, The_pace_goes_with_any_port_and_takes_no_word_that_is_not_its_own) {
    for (const char* pace : {"--pace", "--pace=16550:14", "--pace=ftdi", "--pace=ch341"}) {
        const Ran ran = Sim(std::string(pace) + " " + kBalance + " --load 3 -- " + kHost +
                            " /dev/ttyS0 2400,7E1 S");
        EXPECT_THAT(ran.output, HasSubstr("S S       3.00 g\r\n")) << pace;
    }
}

TEST(WbalanceSim, The_programs_exit_code_and_signal_are_passed_on) {
    EXPECT_EQ(Sim(kBalance + " -- true").exitCode, 0);
    EXPECT_EQ(Sim(kBalance + " -- sh -c 'exit 42'").exitCode, 42);
    EXPECT_EQ(Sim(kBalance + " -- sh -c 'kill -9 $$'").exitCode, 128 + 9);
}

TEST(WbalanceSim, A_signal_to_it_reaches_the_program) {
    const Ran ran = Sim(kBalance +
                        " -- sh -c 'trap \"echo caught; exit 3\" TERM; kill -TERM $PPID; "
                        "while :; do sleep 0.05; done'");
    EXPECT_EQ(ran.output, "caught\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(WbalanceSim, A_missing_program_is_127_and_one_that_cannot_be_run_126) {
    const Ran missing = Sim(kBalance + " -- /no/such/program");
    EXPECT_EQ(missing.exitCode, 127);
    EXPECT_THAT(missing.output, HasSubstr("cannot run /no/such/program: No such file"));
    EXPECT_EQ(Sim(kBalance + " -- /etc/passwd").exitCode, 126);
}

TEST(WbalanceSim, Its_own_errors_are_125_and_say_what_to_do) {
    const std::pair<std::string, const char*> cases[] = {
        {"", "which instrument? See wbalance-sim --list"},
        {kBalance, "nothing to run: put -- PROGRAM behind the options, or use --pty"},
        {kBalance + " --pty -- true", "--pty serves other software and runs no program"},
        {kBalance + " , " + kBalance + " -- true",
         "an instrument is at /dev/ttyS0 already; give each "},
        {kBalance + " , -- true", "which instrument? See wbalance-sim --list"},
        {kBalance + " --fault unplug=lp0 -- true", "the value is a device such as ttyUSB1"},
        {"nothing -- true", "there is no instrument \"nothing\"; there are "},
        {kBalance + " --line 9600 -- true", "\"9600\" are no line settings such as 2400,7E1"},
        {kBalance + " --load heavy -- true", "a load is written GRAMS[@TIME]"},
        {kBalance + " --fault slow -- true", "there is no such fault; there are busy"},
        {kBalance + " --with speed=2 -- true",
         "this instrument has no switch \"speed\"; it has model, reset-"},
        {kBalance + " --with reset-answer=maybe -- true", "takes one of on, off, not \"maybe\""},
        {kBalance + " --with stability-time-out=x -- true", "takes a time such as 500ms or 10s"},
        {kBalance + " --with noise=loud -- true",
         "the switch noise takes a number that is not below zero, not \"loud\""},
        {kBalance + " --port -1 -- true", "--port"},
        {kBalance + " --colour -- true", "--colour"},
        {kBalance + " --log /no/such/dir/log -- true",
         "cannot write the log /no/such/dir/log: No such file or directory"},
        {kBalance + " --pace=uart -- true",
         "no port hands characters over as \"uart\"; there are character, 16550, 16550:TRIGGER"},
    };
    for (const auto& [arguments, message] : cases) {
        const Ran ran = Sim(arguments);
        EXPECT_EQ(ran.exitCode, 125) << arguments;
        EXPECT_THAT(ran.output, StartsWith("wbalance-sim: ")) << arguments;
        EXPECT_THAT(ran.output, HasSubstr(message)) << arguments;
    }
}

TEST(WbalanceSim, A_place_for_its_files_that_is_not_there_is_named) {
    const Ran ran = RunCommand("TMPDIR=/no/such/place " + kTool + " " + kBalance + " -- true");
    EXPECT_THAT(ran.output,
                ContainsRegex("^wbalance-sim: cannot create /no/such/place/wbalance-lines-[^ ]*: "
                              "No such file or directory\n$"));
    EXPECT_EQ(ran.exitCode, 125);
}

TEST(WbalanceSim, Without_descriptors_it_says_so_and_leaves_nothing_behind) {
    if (WBALANCE_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors itself";
    const Ran ran =
        RunCommand("export TMPDIR=$(mktemp -d); for n in 4 5 6 7 8 9 10 11; do (ulimit -n $n; " +
                   kTool + " " + kBalance + " -- true || echo $?); done; rmdir $TMPDIR");
    EXPECT_THAT(ran.output, HasSubstr("Too many open files\n125\n"));
    EXPECT_EQ(ran.exitCode, 0) << ran.output;
}

TEST(WbalanceSim, List_and_help_name_instruments_switches_faults_and_examples) {
    const Ran list = Sim("--list");
    EXPECT_EQ(list.exitCode, 0);
    for (const std::string& text : {kBalance + ": ", kOtherBalance + ": ", kThirdBalance + ": ",
                                    std::string("reset-answer=on|off"), std::string("noise="),
                                    std::string("unplug"), std::string("2400,7E1")})
        EXPECT_THAT(list.output, HasSubstr(text));
    const Ran help = Sim("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.output, HasSubstr("Examples:"));
}

TEST(WbalanceSim, An_output_that_can_not_be_written_is_a_failure) {
    for (const char* arguments : {"--list", "--help", "control --help"}) {
        const Ran ran = Sim(std::string(arguments) + " >/dev/full");
        EXPECT_EQ(ran.exitCode, 125) << arguments;
        EXPECT_THAT(ran.output, StartsWith("wbalance-sim: standard output can't be written"))
            << arguments;
    }
    EXPECT_EQ(Sim("--list >&-").exitCode, 125);
    EXPECT_EQ(Sim(kBalance + " -- true >&-").exitCode, 0) << "it has nothing to say";
}

TEST(WbalanceSim, A_pseudo_terminal_serves_any_software_until_it_is_told_to_end) {
    const Ran ran = RunCommand("coproc=$(mktemp -u); mkfifo $coproc; " + kTool + " " + kBalance +
                               " --load 12.34 --line 2400,8N1 --pty > $coproc & sim=$!; "
                               "read path < $coproc; rm $coproc; exec 3<>$path; "
                               "printf 'S\\r\\n' >&3; head -n 1 <&3; exec 3>&-; "
                               "exec 3<>$path; printf 'SI\\r\\n' >&3; head -n 1 <&3; "
                               "kill -INT $sim; wait $sim; echo \"code $?\"");
    EXPECT_EQ(ran.output, "S S      12.34 g\r\nS S      12.34 g\r\ncode 0\n");
}
