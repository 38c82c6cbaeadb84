// wbalance-sim replay from outside, with `wbalance` as the host.

#include <gmock/gmock.h>

#include <filesystem>
#include <future>
#include <map>

#include "RunProgram.h"

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kRecords = WBALANCE_RECORDS;

Ran Replay(const std::string& arguments) {
    return RunShell(std::string(WBALANCE_SIM) + " replay " + arguments);
}

const char* const kOfToledo =
    "# wbalance record 1\n"
    "# driver: mettler-toledo\n"
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
    file.Write(kOfToledo);
    const Ran ran = Replay(file.Path() + Weighing("mettler-toledo", "/dev/ttyUSB3"));
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_EQ(ran.errors, "");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Replay, Port_line_and_speed_can_be_chosen) {
    const TemporaryFile file;
    const TemporaryFile log;
    file.Write(kOfToledo);
    const Ran ran = Replay(file.Path() + " --fast --port 4 --line 9600,8N1 --log " + log.Path() +
                           Weighing("mettler-toledo", "4") + " -l 9600,8N1");
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_THAT(log.Text(), ContainsRegex("> \"S.r.n\" 9600,8N1\n"));
}

TEST(Replay, A_host_that_departs_is_told_at_which_line_and_the_exit_code_says_so) {
    const TemporaryFile file;
    file.Write(kOfToledo);
    const Ran ran = Replay(file.Path() + Sending("Z", "-parodd"));
    EXPECT_THAT(ran.errors, HasSubstr("wbalance-sim: " + file.Path() +
                                      ":5: the host departs from the record: it sends \"Z\\r\\n\", "
                                      "the record has \"S\\r\\n\"\n"));
    EXPECT_EQ(ran.exitCode, 124);
}

TEST(Replay, A_host_that_ends_early_is_told_what_is_missing) {
    const TemporaryFile file;
    file.Write(kOfToledo);
    const Ran ran = Replay(file.Path() + " -- true");
    EXPECT_EQ(ran.errors, "wbalance-sim: " + file.Path() +
                              ":5: the host has ended without sending \"S\\r\\n\"\n");
    EXPECT_EQ(ran.exitCode, 124);
}

TEST(Replay, A_folder_of_records_is_weighed_as_each_was) {
    const int departed = 124;  // excerpts, without what the driver sends ahead
    const std::map<std::string, int> exitCodes = {
        {"gibertini-stable.record", 0},
        {"kern-seven-digits.record", 11},
        {"mettler-pm-busy-read-as-zero.record", departed},
        {"mettler-toledo-reset-answer-taken-for-4.record", departed},
        {"mettler-xs-incomplete-average.record", departed},
        {"ohaus-kilograms.record", 10},
        {"radwag-overload.record", 6},
        {"sartorius-overload-read-as-zero.record", 6}};
    std::map<std::string, std::future<Ran>> running;
    for (const auto& file : std::filesystem::directory_iterator(kRecords)) {
        const std::string name = file.path().filename();
        const std::string driver =
            RunShell("sed -n 's/# driver: //p' " + file.path().string() + " | tr -d '\\n'").output;
        const std::string arguments = file.path().string() + Weighing(driver, "0 --usb");
        running[name] = std::async(std::launch::async, [arguments] { return Replay(arguments); });
    }
    EXPECT_EQ(running.size(), exitCodes.size());
    for (auto& [name, ran] : running)
        EXPECT_EQ(ran.get().exitCode, exitCodes.at(name)) << name;
}

TEST(Replay, Records_and_instruments_stand_side_by_side) {
    const TemporaryFile file;
    file.Write(kOfToledo);
    const Ran ran =
        RunShell(std::string(WBALANCE_SIM) + " mettler-toledo --load 5 , replay " + file.Path() +
                 " --fast -- sh -c '" + SERIAL_HOST + " /dev/ttyS0 2400,7E1 S; " + SERIAL_HOST +
                 " /dev/ttyUSB3 2400,7E1 S'");
    EXPECT_EQ(ran.output, "S S       5.00 g\r\nS S      12.34 g\r\n");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Replay, A_host_at_other_line_settings_is_told_to_look_at_them) {
    const TemporaryFile file;
    file.Write(kOfToledo);
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
        {broken.Path() + " -- true", broken.Path() + ":2: expected one of > < = behind the time"},
        {broken.Path() + " --load 5 -- true", "The following arguments were not expected: "},
    };
    for (const auto& [arguments, message] : cases) {
        const Ran ran = Replay(arguments);
        EXPECT_THAT(ran.errors, StartsWith("wbalance-sim: " + message)) << arguments;
        EXPECT_EQ(ran.exitCode, 125) << arguments;
    }
}

TEST(Replay, Help_has_examples) {
    const Ran ran = Replay("--help");
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_THAT(ran.output, HasSubstr("Examples:\n  wbalance weigh -d radwag"));
}

TEST(Replay, A_record_is_served_on_a_terminal_until_it_is_told_to_end) {
    const TemporaryFile file;
    const TemporaryFile path;
    file.Write(kOfToledo);
    const Ran ran = RunShell(std::string(WBALANCE_SIM) + " replay " + file.Path() +
                             " --fast --pty > " + path.Path() + " & until [ -s " + path.Path() +
                             " ]; do sleep 0.05; done; exec 3<>$(cat " + path.Path() +
                             "); printf 'S\\r\\n' >&3; head -n 1 <&3; exec 3>&-; kill -INT $!; "
                             "wait $!; echo \"code $?\"");
    EXPECT_EQ(ran.output, "S S      12.34 g\r\ncode 0\n");
    EXPECT_EQ(ran.errors, "");
}
