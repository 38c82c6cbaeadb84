// wbalance-sim replay from outside, with `wbalance` as the host.

#include <gmock/gmock.h>

#include <filesystem>
#include <future>
#include <map>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kRecords = WBALANCE_RECORDS;

Ran Replay(const std::string& arguments) {
    return RunShell(std::string(WBALANCE_SIM) + " replay " + arguments);
}

const std::string kOfBalance =
    "# wbalance record 1\n"
    "# driver: " +
    kBalance +
    "\n"
    "# port: /dev/ttyUSB3\n"
    "# line: 2400,7E1\n"
    "0 > S\\r\\n\n"
    "2000 < S S      12.34 g\\r\\n\n"
    "2001 = weigh 1 12.34\n";

/// A program that sends a command to the port of that record and does not wait for an answer.
std::string Sending(const std::string& command, const std::string& parity) {
    return " -- sh -c 'stty -F /dev/ttyUSB3 2400 cs7 parenb " + parity + " raw -echo && printf \"" +
           command + "\\r\\n\" > /dev/ttyUSB3'";
}

std::string Weighing(const std::string& driver, const std::string& port) {
    return std::string(" -- ") + WBALANCE + " weigh -d " + driver + " -p " + port;
}

}  // namespace

TEST(Replay, The_host_reads_what_was_recorded_at_the_port_and_line_of_the_record) {
    const TemporaryFile file;
    file.Write(kOfBalance);
    const Ran ran = Replay(file.Path() + Weighing(kBalance, "/dev/ttyUSB3"));
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_EQ(ran.errors, "");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Replay, Port_line_and_speed_can_be_chosen) {
    const TemporaryFile file;
    const TemporaryFile log;
    file.Write(kOfBalance);
    const Ran ran = Replay(file.Path() + " --fast --port 4 --line 9600,8N1 --log " + log.Path() +
                           Weighing(kBalance, "4") + " -l 9600,8N1");
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_THAT(log.Text(), ContainsRegex("# host: 9600,8N1\n[0-9]+ > S.r.n\n"));
}

TEST(Replay, A_host_that_departs_is_told_at_which_line_and_the_exit_code_says_so) {
    const TemporaryFile file;
    file.Write(kOfBalance);
    const Ran ran = Replay(file.Path() + Sending("Z", "-parodd"));
    EXPECT_THAT(ran.errors, HasSubstr("wbalance-sim: " + file.Path() +
                                      ":5: the host departs from the record: it sends \"Z\\r\\n\", "
                                      "the record has \"S\\r\\n\"\n"));
    EXPECT_EQ(ran.exitCode, 124);
}

TEST(Replay, A_host_that_ends_early_is_told_what_is_missing) {
    const TemporaryFile file;
    file.Write(kOfBalance);
    const Ran ran = Replay(file.Path() + " -- true");
    EXPECT_EQ(ran.errors, "wbalance-sim: " + file.Path() +
                              ":5: the host has ended without sending \"S\\r\\n\"\n");
    EXPECT_EQ(ran.exitCode, 124);
}

namespace {

/// What stands behind "# NAME: " in a record; empty where it does not say that.
std::string HeaderOf(const std::filesystem::path& record, const std::string& name) {
    return RunShell("sed -n 's/^# " + name + ": //p' " + record.string() + " | tr -d '\\n'").output;
}

}  // namespace

TEST(Replay, A_folder_of_records_is_weighed_as_each_was) {
    std::map<std::string, std::future<Ran>> running;
    std::map<std::string, std::string> exitCodes;
    for (const auto& file : std::filesystem::directory_iterator(kRecords)) {
        const std::string name = file.path().filename();
        const std::string arguments =
            file.path().string() + Weighing(HeaderOf(file.path(), "driver"), "0 --usb");
        exitCodes[name] = HeaderOf(file.path(), "exit code of wbalance-sim replay");
        running[name] = std::async(std::launch::async, [arguments] { return Replay(arguments); });
    }
    EXPECT_GE(running.size(), 8u);
    for (auto& [name, ran] : running)
        EXPECT_EQ(std::to_string(ran.get().exitCode), exitCodes.at(name)) << name;
}

TEST(Replay, Records_and_instruments_stand_side_by_side) {
    const TemporaryFile file;
    file.Write(kOfBalance);
    const Ran ran =
        RunShell(std::string(WBALANCE_SIM) + " " + kBalance + " --load 5 , replay " + file.Path() +
                 " --fast -- sh -c '" + SERIAL_HOST + " /dev/ttyS0 2400,7E1 S; " + SERIAL_HOST +
                 " /dev/ttyUSB3 2400,7E1 S'");
    EXPECT_EQ(ran.output, "S S       5.00 g\r\nS S      12.34 g\r\n");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Replay, A_host_at_other_line_settings_is_told_to_look_at_them) {
    const TemporaryFile file;
    file.Write(kOfBalance);
    const Ran ran = Replay(file.Path() + Sending("S", "parodd"));
    EXPECT_THAT(ran.errors, HasSubstr(":5: the host's characters arrive damaged: its line settings "
                                      "are not those of the record, 2400,7E1\n"));
    EXPECT_EQ(ran.exitCode, 124);
}

TEST(Replay, Its_own_errors_are_125_and_say_what_to_do) {
    const TemporaryFile broken;
    broken.Write("# wbalance record 1\n12 ? S\n");
    const std::pair<std::string, std::string> cases[] = {
        {"-- true", "which record? See wbalance-sim replay --help"},
        {"/no/such.record -- true", "/no/such.record: No such file or directory"},
        {broken.Path() + " -- true", broken.Path() + ":2: expected one of > < = ! behind the time"},
        {broken.Path() + " --load 5 -- true", "The following arguments were not expected: "},
    };
    for (const auto& [arguments, message] : cases) {
        const Ran ran = Replay(arguments);
        EXPECT_THAT(ran.errors, StartsWith("wbalance-sim: " + message)) << arguments;
        EXPECT_EQ(ran.exitCode, 125) << arguments;
    }
}

TEST(Replay, A_log_of_a_run_in_which_more_happened_is_replayed_and_says_what_is_not) {
    const TemporaryFile log;
    const TemporaryFile script;
    script.Write("50ms press print\n100ms unplug for 100ms\n");
    RunShell(std::string(WBALANCE_SIM) + " " + kBalance + " --usb --load 3 --script " +
             script.Path() + " --log " + log.Path() + " -- sh -c 'until grep -q plugged.in " +
             log.Path() + "; do sleep 0.05; done; " + SERIAL_HOST + " /dev/ttyUSB0 2400,7E1 S'");
    const Ran ran = Replay(log.Path() + " -- " + SERIAL_HOST + " /dev/ttyUSB0 2400,7E1 S");
    EXPECT_EQ(ran.output, "S S       3.00 g\r\n");
    EXPECT_THAT(ran.errors,
                HasSubstr(": not replayed: lost, the port is closed: S S       3.00 g"));
    EXPECT_THAT(ran.errors, HasSubstr(": not replayed: /dev/ttyUSB0 unplugged\n"));
    EXPECT_THAT(ran.errors, HasSubstr(": not replayed: /dev/ttyUSB0 plugged in\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Replay, A_log_of_a_host_at_other_settings_says_so_and_that_its_characters_are_damaged) {
    const TemporaryFile log;
    const std::string send = Sending("S", "parodd");
    RunShell(std::string(WBALANCE_SIM) + " " + kBalance + " --usb --port 3 --log " + log.Path() +
             send);
    const Ran ran = Replay(log.Path() + send);
    EXPECT_THAT(ran.errors, HasSubstr(": not replayed: the host speaks at 2400,7O1, the instrument "
                                      "listens at 2400,7E1\n"));
    EXPECT_THAT(ran.errors, HasSubstr("the host's characters arrive damaged"));
    EXPECT_EQ(ran.exitCode, 124);
}

TEST(Replay, A_log_of_several_instruments_is_refused) {
    const TemporaryFile log;
    RunShell(std::string(WBALANCE_SIM) + " " + kBalance + " , " + kBalance + " --port 1 --log " +
             log.Path() + " -- " + SERIAL_HOST + " /dev/ttyS1 2400,7E1 S");
    const Ran ran = Replay(log.Path() + " -- true");
    EXPECT_THAT(ran.errors, HasSubstr(": this is the log of several instruments; only the log of "
                                      "one alone is a record\n"));
    EXPECT_EQ(ran.exitCode, 125);
}

TEST(Replay, Help_has_examples) {
    const Ran ran = Replay("--help");
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_THAT(ran.output, HasSubstr("Examples:\n  wbalance weigh -d "));
}

TEST(Replay, A_record_is_served_on_a_terminal_until_it_is_told_to_end) {
    const TemporaryFile file;
    const TemporaryFile path;
    file.Write(kOfBalance);
    const Ran ran = RunShell(std::string(WBALANCE_SIM) + " replay " + file.Path() +
                             " --fast --line 2400,8N1 --pty > " + path.Path() + " & until [ -s " +
                             path.Path() + " ]; do sleep 0.05; done; exec 3<>$(cat " + path.Path() +
                             "); printf 'S\\r\\n' >&3; head -n 1 <&3; exec 3>&-; kill -INT $!; "
                             "wait $!; echo \"code $?\"");
    EXPECT_EQ(ran.output, "S S      12.34 g\r\ncode 0\n");
    EXPECT_EQ(ran.errors, "");
}
