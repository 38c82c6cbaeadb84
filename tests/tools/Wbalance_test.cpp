// wbalance from outside: its command line, its exit codes, and what it puts on which stream.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QtCore/QJsonObject>
#include <algorithm>
#include <csignal>
#include <sstream>
#include <thread>

#include "Examples.h"
#include "Facts.h"
#include "JsonOf.h"
#include "RunProgram.h"
#include "StartedProgram.h"

using examples::kBalance;
using examples::kBalanceClass;
using examples::kBalanceWithPanel;
using examples::kOtherBalance;
using examples::kThirdBalance;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string kWeigh = "weigh -d " + kBalance + " -t 0";

TEST(Wbalance, Weigh_puts_the_weight_alone_on_standard_output) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34", kWeigh);
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_EQ(ran.errors, "");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Wbalance, A_balance_that_answers_the_reset_is_weighed_all_the_same) {
    const Ran ran = WbalanceWith(kBalance + " --load 100 --with serial-number=4444444444", kWeigh);
    EXPECT_EQ(ran.output, "100.00 g\n");
}

TEST(Wbalance, The_trace_goes_to_standard_error_and_only_when_asked_for) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34", kWeigh + " --trace");
    EXPECT_EQ(ran.output, "12.34 g\n");
    EXPECT_THAT(ran.errors, StartsWith("/dev/ttyS0 OPENED SUCCESSFULLY!\n\n"));
    EXPECT_THAT(ran.errors, EndsWith("Generic Mettler Toledo - weight = 12.34 cc.\n\n"));
}

TEST(Wbalance, Json_has_the_value_the_digits_as_received_and_the_raw_answer) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.3", kWeigh + " --json --mode stable");
    const QJsonObject object = JsonOf(ran.output);
    EXPECT_EQ(object["status"].toString(), "weight");
    EXPECT_EQ(object["value"].toDouble(), 12.3);
    EXPECT_EQ(object["digits"].toString(), "12.30");
    EXPECT_EQ(object["unit"].toString(), "g");
    EXPECT_EQ(object["stability"].toString(), "stable");
    EXPECT_EQ(object["answer"].toString(), "S S      12.30 g\r\n");
    EXPECT_EQ(object["driver"].toString().toStdString(), kBalance);
    EXPECT_EQ(object["port"].toString(), "/dev/ttyS0");
    EXPECT_EQ(object.size(), 10);
}

TEST(Wbalance, Csv_has_a_header) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34", kWeigh + " --csv");
    EXPECT_THAT(ran.output, StartsWith("time,driver,port,status,value,unit,stability,answer\n"));
    EXPECT_THAT(ran.output, EndsWith("," + kBalance +
                                     ",\"/dev/ttyS0\",weight,12.34,\"g\",stable,"
                                     "\"S S      12.34 g\\r\\n\"\n"));
}

TEST(Wbalance, An_overload_is_no_weight_and_has_its_exit_code) {
    const Ran ran = WbalanceWith(kBalance + " --fault overload", kWeigh);
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors,
              "wbalance: /dev/ttyS0: overload: more is on the pan than the balance can weigh; take "
              "something off; it sent \"S +\\r\\n\"\n");
    EXPECT_EQ(ran.exitCode, 6);
}

TEST(Wbalance, Json_reports_an_underload_without_a_value) {
    const Ran ran = WbalanceWith(kBalance + " --fault underload", kWeigh + " --json");
    EXPECT_EQ(JsonOf(ran.output)["status"].toString(), "underload");
    EXPECT_TRUE(JsonOf(ran.output)["value"].isNull());
    EXPECT_EQ(ran.exitCode, 7);
}

TEST(Wbalance, Silence_has_its_exit_code) {
    const Ran ran = WbalanceWith(kBalance + " --fault silent", kWeigh);
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, StartsWith("wbalance: /dev/ttyS0: no answer;"));
    EXPECT_EQ(ran.exitCode, 4);
}

TEST(Wbalance, An_answer_cut_short_is_not_understood) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34 --fault truncated=7", kWeigh);
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Wbalance, Wrong_line_settings_never_give_a_weight) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34", kWeigh + " --line 9600,8N1");
    EXPECT_EQ(ran.output, "");
    EXPECT_NE(ran.exitCode, 0);
}

TEST(Wbalance, A_missing_port_is_said_to_be_missing) {
    const Ran ran = Wbalance("weigh -d " + kBalance + " --port 4711 --usb");
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors,
              "wbalance: /dev/ttyUSB4711: there is no such port; is the adapter plugged in? "
              "`wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Wbalance, An_unknown_driver_is_answered_with_those_there_are) {
    const Ran ran = Wbalance("weigh -d metler");
    EXPECT_THAT(
        ran.errors,
        StartsWith("wbalance: there is no driver \"metler\"; there are: " + kBalance + ", "));
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, An_unknown_command_is_answered_with_those_there_are) {
    const Ran ran = Wbalance("wiegh -d " + kOtherBalance);
    EXPECT_THAT(ran.errors,
                StartsWith("wbalance: there is no command \"wiegh\"; there are: weigh, "));
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, An_unknown_mode_is_answered_with_those_there_are) {
    const Ran ran = Wbalance("weigh -d " + kOtherBalance + " -m quick");
    EXPECT_EQ(ran.errors, "wbalance: there is no mode \"quick\"; there are: stable, auto, now\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_device_of_another_kind_is_refused_with_the_kinds_there_are) {
    const Ran ran = Wbalance("weigh -d " + kOtherBalance + " -p /dev/null");
    EXPECT_EQ(ran.errors,
              "wbalance: /dev/null: only /dev/ttyS<number> and /dev/ttyUSB<number> can be used; "
              "connect the balance to such a port\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Wbalance, Two_balances_at_one_port_are_refused) {
    const Ran ran =
        Wbalance("monitor " + kOtherBalance + "@0 " + kThirdBalance + "@/dev/ttyS0 -n 1");
    EXPECT_EQ(ran.errors, "wbalance: two balances are at /dev/ttyS0; a port has one balance\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_time_out_of_more_than_a_minute_is_refused) {
    const Ran ran = Wbalance("weigh -d " + kBalance + " -t 61");
    EXPECT_THAT(ran.errors, HasSubstr("61 not in range 0 to 60"));
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_full_disk_behind_standard_output_is_a_failure) {
    const Ran ran = RunShell(std::string(WBALANCE) + " drivers >/dev/full");
    EXPECT_EQ(ran.errors, "wbalance: standard output can't be written: No space left on device\n");
    EXPECT_EQ(ran.exitCode, 70);
}

TEST(Wbalance, A_full_disk_behind_a_record_is_a_failure_and_no_misuse) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34", kWeigh + " --record /dev/full");
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors,
              "wbalance: /dev/full: the record can't be written: No space left on device\n");
    EXPECT_EQ(ran.exitCode, 70);
}

TEST(Wbalance, A_record_in_a_folder_that_is_not_there_is_refused) {
    const Ran ran = Wbalance("weigh -d " + kOtherBalance + " --record /tmp/no/such/record");
    EXPECT_EQ(ran.errors, "wbalance: /tmp/no/such/record: No such file or directory\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_folder_is_no_record) {
    const Ran ran = Wbalance("replay /tmp");
    EXPECT_EQ(ran.errors, "wbalance: /tmp: can't be read: Is a directory\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_reader_that_goes_ends_the_monitor_silently_and_leaves_no_lock_behind) {
    const Ran ran = RunShell(std::string(WBALANCE_SIM) + " " + kBalance +
                             " --load 12.34 -- bash -c '" + WBALANCE + " monitor " + kBalance +
                             "@0 -i 0 -t 0 --csv | head -1;"
                             " echo ${PIPESTATUS[0]}; test -e /var/lock/LCK..ttyS0'");
    EXPECT_EQ(ran.output, "time,driver,port,status,value,unit,stability,answer\n141\n");
    EXPECT_EQ(ran.errors, "");
    EXPECT_EQ(ran.exitCode, 1) << "the lock file is there";
}

TEST(Wbalance, A_wrong_option_leads_to_the_help_of_its_command) {
    const Ran ran = Wbalance("weigh -d " + kOtherBalance + " extra");
    EXPECT_EQ(ran.errors,
              "wbalance: The following argument was not expected: extra; see wbalance weigh "
              "--help\n");
    EXPECT_EQ(ran.exitCode, 2);
}

// A weighing of which the process that holds the port gets a signal, once it is there.
Ran WeighAndKill(const std::string& signal) {
    return RunShell(std::string(WBALANCE_SIM) + " " + kBalance + " --fault silent -- sh -c '" +
                    WBALANCE + " weigh -d " + kBalance + " -t 60 & until read holder " +
                    "2>/dev/null </var/lock/LCK..ttyS0; do sleep 0.05; done; kill -s " + signal +
                    " $holder; wait $!; code=$?; ! test -e /var/lock/LCK..ttyS0 || echo locked; "
                    "exit $code'");
}

TEST(Wbalance, Ending_the_process_that_holds_the_port_ends_the_program) {
    const Ran ran = WeighAndKill("TERM");
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, EndsWith("wbalance: interrupted\n"));
    EXPECT_EQ(ran.exitCode, 130);
}

TEST(Wbalance, A_killed_holder_is_not_taken_for_a_library_that_gave_up) {
    const Ran ran = WeighAndKill("KILL");
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors,
                EndsWith("wbalance: /dev/ttyS0: the process that talked to the balance was killed "
                         "(SIGKILL); try again\n"));
    EXPECT_EQ(ran.exitCode, 70);
}

TEST(Wbalance, Tare_says_what_was_done) {
    const Ran ran =
        WbalanceWith(kBalanceWithPanel + " --load 50", "tare -d " + kBalanceWithPanel + " -t 0");
    EXPECT_EQ(ran.output, "tared\n");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Wbalance, A_preset_tare_that_the_balance_refuses_is_no_success) {
    const Ran ran =
        WbalanceWith(kBalanceWithPanel, "preset-tare -d " + kBalanceWithPanel + " -t 0 99999");
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, HasSubstr("preset-tare: the balance did not confirm it; it sent "));
    EXPECT_EQ(ran.exitCode, 9);
}

TEST(Wbalance, A_preset_tare_with_three_decimals_is_refused_before_anything_is_sent) {
    const Ran ran = Wbalance("preset-tare -d " + kBalanceWithPanel + " 1.234");
    EXPECT_EQ(ran.errors, "wbalance: a preset tare is sent with two decimals; give no more\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, What_a_driver_can_not_send_is_refused_with_the_limit) {
    for (const auto& one : facts::All()) {
        for (const auto& refused : one.refused) {
            const Ran ran = Wbalance(refused.arguments + " -d " + one.name);
            EXPECT_EQ(ran.errors, "wbalance: " + refused.says + "\n");
            EXPECT_EQ(ran.exitCode, 2);
        }
    }
}

TEST(Wbalance, A_display_text_of_58_characters_is_refused_with_the_limit) {
    const Ran ran = Wbalance("display -d " + kBalanceWithPanel + " " + std::string(58, 'x'));
    EXPECT_EQ(ran.errors, "wbalance: the text has 58 characters; at most 57 can be sent\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, All_bytes_of_an_operation_go_over_the_line) {
    for (const auto& one : facts::All()) {
        for (const auto& sent : one.sends) {
            const TemporaryFile log;
            const Ran ran = WbalanceWith(one.name + " --log " + log.Path(),
                                         sent.operation + " -t 0 -d " + one.name);
            EXPECT_EQ(ran.exitCode, 0) << ran.errors;
            for (const auto& bytes : sent.bytes)
                EXPECT_THAT(log.Text(), HasSubstr(bytes)) << one.name;
        }
    }
}

TEST(Wbalance, A_display_text_that_the_balance_confirms_is_displayed) {
    const Ran ran = WbalanceWith(kBalanceWithPanel, "display -d " + kBalanceWithPanel + " HELLO");
    EXPECT_EQ(ran.output, "displayed\n");
}

TEST(Wbalance, An_operation_that_a_driver_lacks_is_answered_with_the_drivers_that_have_it) {
    std::string names;
    for (const auto& one : facts::All()) {
        if (one.Has("zero")) names += (names.empty() ? "" : ", ") + one.name;
    }
    const Ran ran = Wbalance("zero -d " + kThirdBalance);
    EXPECT_EQ(ran.errors, "wbalance: the driver " + kThirdBalance +
                              " has no zero; these have: " + names + "\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_factory_reset_without_a_terminal_needs_yes) {
    const Ran ran =
        RunShell(WBALANCE " factory-reset -d " + facts::FirstWith("factory-reset") + " </dev/null");
    EXPECT_EQ(ran.errors, "wbalance: factory-reset asks first; without a terminal add --yes\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, A_record_is_replayed_to_the_same_reading) {
    const TemporaryFile record;
    const Ran weighed =
        WbalanceWith(kBalance + " --load 12.34", kWeigh + " --record " + record.Path());
    const Ran replayed = Wbalance("replay " + record.Path());
    EXPECT_EQ(weighed.output, "12.34 g\n");
    EXPECT_EQ(replayed.output, "12.34 g\n");
    EXPECT_THAT(record.Text(), StartsWith("# wbalance record 1\n# driver: " + kBalance +
                                          "\n"
                                          "# port: /dev/ttyS0\n# line: 2400,7E1\n# date: "));
    EXPECT_THAT(record.Text(), HasSubstr(" > S\\r\\n\n"));
    EXPECT_THAT(record.Text(), HasSubstr(" < S S      12.34 g\\r\\n\n"));
}

TEST(Wbalance, Every_record_of_the_folder_is_read_as_its_name_says) {
    std::vector<std::string> records;
    for (const auto& one : facts::All()) {
        for (const auto& [record, exitCode] : one.records) {
            const std::string file = WBALANCE_RECORDS "/" + record + ".record";
            EXPECT_EQ(Wbalance("replay " + file).exitCode, exitCode) << record;
            records.push_back(file);
        }
    }
    std::istringstream folder(RunShell("ls " WBALANCE_RECORDS "/*").output);
    for (std::string file; std::getline(folder, file);)
        EXPECT_THAT(records, testing::Contains(file));
}

std::string RecordWith(const std::string& date, const std::string& time) {
    return "# wbalance record 1\n# driver: " + kBalance + "\n# date: " + date + "\n" + time +
           " < S S     12.34 g\\r\\n\n" + time + " = weigh 1 12.34\n";
}

TEST(Wbalance, A_record_at_a_time_that_no_clock_has_is_refused) {
    const TemporaryFile file;
    for (const char* date : {"9999-12-31T00:00:00.000+00:00", "1969-12-31", "yesterday"}) {
        file.Write(RecordWith(date, "0"));
        const Ran ran = Wbalance("replay " + file.Path() + " --json");
        EXPECT_EQ(ran.errors, "wbalance: the record's date \"" + std::string(date) +
                                  "\" is none from 1970 to 2150 such as "
                                  "2026-11-21T03:12:00.000+01:00\n");
        EXPECT_EQ(ran.exitCode, 2);
    }
    for (const char* time : {"99999999999999", "9223372036854775807"}) {
        file.Write(RecordWith("2026-11-21", time));
        const Ran ran = Wbalance("replay " + file.Path());
        EXPECT_EQ(ran.errors,
                  "wbalance: " + file.Path() + ":4: the time is more than a hundred years\n");
        EXPECT_EQ(ran.exitCode, 2);
    }
    file.Write(RecordWith("2150-12-31", "3153600000000"));
    EXPECT_THAT(Wbalance("replay " + file.Path() + " --json").output,
                HasSubstr("\"time\":\"2250-"));
}

TEST(Wbalance, An_interval_that_is_no_time_is_refused) {
    for (const char* interval :
         {"nan", "-nan", "inf", "-inf", "1e300", "-1", "86401", "1s", "''"}) {
        const Ran ran = Wbalance("monitor " + kBalance + "@0 -n 1 -i " + interval);
        EXPECT_THAT(ran.errors, StartsWith("wbalance: ")) << interval;
        EXPECT_EQ(ran.exitCode, 2) << interval;
    }
    EXPECT_THAT(Wbalance("monitor " + kBalance + "@0 -n 1 -i nan").errors,
                HasSubstr("nan is no number"));
}

TEST(Wbalance, Numbers_that_no_command_takes_are_refused) {
    for (const std::string& arguments :
         {"weigh -d " + kBalance + " -t nan", "weigh -d " + kBalance + " -t 1e9",
          "weigh -d " + kBalance + " -t 99999999999999999999", "weigh -d " + kBalance + " -t -1",
          "weigh -d " + kBalance + " -p 999999999", "weigh -d " + kBalance + " -l 999999999",
          "weigh -d " + kBalance + " -l 0", "weigh -d " + kBalance + " -l -1",
          "monitor " + kBalance + "@0 -n -1", "monitor " + kBalance + "@0 -n nan",
          "monitor " + kBalance + "@0 -n 99999999999999999999",
          "monitor " + kBalance + "@99999999999999999999 -n 1",
          "preset-tare -d " + kBalanceWithPanel + " nan",
          "preset-tare -d " + kBalanceWithPanel + " inf",
          "preset-tare -d " + kBalanceWithPanel + " 1e300",
          "preset-tare -d " + kBalanceWithPanel + " -- -1"}) {
        const Ran ran = Wbalance(arguments);
        EXPECT_EQ(ran.exitCode, 2) << arguments;
        EXPECT_THAT(ran.errors, StartsWith("wbalance: ")) << arguments;
    }
}

TEST(Wbalance, A_record_with_an_answer_of_a_million_characters_is_replayed) {
    for (const auto& one : facts::All()) {
        if (one.numberOfAnyLength.empty()) continue;
        const TemporaryFile file;
        file.Write("# wbalance record 1\n# driver: " + one.name + "\n0 < " +
                   one.numberOfAnyLength.front() + std::string(1'000'000, '7') +
                   " g\\r\\n\n1 = weigh 1 7\n");
        const Ran ran = RunShell("ulimit -s 512; " WBALANCE " replay " + file.Path());
        EXPECT_EQ(ran.errors, "");
        EXPECT_THAT(ran.output,
                    StartsWith("the record is cut off, or longer than the driver takes"))
            << one.name;
        EXPECT_LT(ran.output.size(), 1000u);
        EXPECT_EQ(ran.exitCode, 11);
    }
}

TEST(Wbalance, A_name_in_a_record_changes_no_terminal) {
    const TemporaryFile file;
    file.Write("# wbalance record 1\n# driver: a\x1b[2J\xff\n0 = weigh 1 1\n");
    EXPECT_THAT(Wbalance("replay " + file.Path()).errors,
                StartsWith("wbalance: there is no driver \"a\\x1b[2J\\xff\"; there are: "));
    EXPECT_THAT(Wbalance("replay \"$(printf '/tmp/no\\033such\\nfile\\377')\"").errors,
                StartsWith("wbalance: /tmp/no\\x1bsuch\\nfile\\xff: "));
}

TEST(Wbalance, The_trace_of_noise_changes_no_terminal) {
    const Ran ran = WbalanceWith(kBalance + " --fault noise=300", kWeigh + " --trace");
    EXPECT_THAT(ran.errors, HasSubstr("Read from scale: "));
    for (const char character : ran.errors)
        EXPECT_TRUE((character >= ' ' && character <= '~') || character == '\n' ||
                    character == '\r')
            << ran.errors;
}

TEST(Wbalance, Mode_stable_gives_no_weight_that_is_not_known_to_be_stable) {
    for (const auto& one : facts::All()) {
        for (const auto& moving : one.notKnownToBeStable) {
            SCOPED_TRACE(one.name);
            const std::string instrument = one.name + " " + moving.simulated;
            const std::string weigh = "weigh -t 0 -d " + one.name;
            const Ran stable = WbalanceWith(instrument, weigh + " --mode stable");
            EXPECT_EQ(stable.output, "");
            EXPECT_EQ(stable.exitCode, 8) << stable.errors;
            const Ran json = WbalanceWith(instrument, weigh + " --mode stable --json");
            EXPECT_EQ(JsonOf(json.output)["status"].toString(), "not-stable");
            EXPECT_TRUE(JsonOf(json.output)["value"].isNull());
            const Ran now = WbalanceWith(instrument, weigh + " --mode now");
            EXPECT_THAT(now.output, StartsWith("50.00"));
        }
    }
}

TEST(Wbalance, Monitor_in_mode_stable_gives_no_weight_that_is_not_known_to_be_stable) {
    for (const auto& one : facts::All()) {
        for (const auto& moving : one.notKnownToBeStable) {
            const Ran ran =
                WbalanceWith(one.name + " " + moving.simulated,
                             "monitor " + one.name + "@0 -n 2 -i 0 -t 0 --mode stable --csv");
            EXPECT_THAT(ran.output, HasSubstr(moving.csv)) << one.name;
            EXPECT_THAT(ran.output, Not(HasSubstr(",weight,"))) << one.name;
        }
    }
}

TEST(Wbalance, A_file_that_is_no_record_is_refused_with_its_line) {
    const TemporaryFile file;
    file.Write("# wbalance record 1\n12 ? S\n");
    const Ran ran = Wbalance("replay " + file.Path());
    EXPECT_EQ(ran.errors,
              "wbalance: " + file.Path() + ":2: expected one of > < = ! behind the time\n");
    EXPECT_EQ(ran.exitCode, 2);
}

TEST(Wbalance, Monitor_ends_after_the_count_with_a_summary_on_standard_error) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34",
                                 "monitor " + kBalance + "@0 -n 3 -i 0 -t 0 --json");
    std::istringstream lines(ran.output);
    std::string line;
    int count = 0;
    for (; std::getline(lines, line); ++count)
        EXPECT_EQ(JsonOf(line)["value"].toDouble(), 12.34);
    EXPECT_EQ(count, 3);
    EXPECT_THAT(ran.errors,
                StartsWith(kBalance + " /dev/ttyS0: 3 readings, 3 weights, min "
                                      "12.34, max 12.34, mean 12.340, sd 0.000 g, drift "));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Wbalance, Monitor_says_lost_and_back_for_an_adapter_that_is_pulled_and_put_back) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34 --fault unplug@1s+2s",
                                 "monitor " + kBalance + "@0 -n 12 -i 0 -t 0 --json");
    const auto lost = ran.output.find("\"status\":\"lost\"");
    const auto back = ran.output.find("\"status\":\"back\"");
    EXPECT_NE(lost, std::string::npos);
    EXPECT_NE(back, std::string::npos);
    EXPECT_LT(lost, back);
    EXPECT_EQ(ran.output.find("\"status\":\"lost\"", lost + 1), std::string::npos);
}

TEST(Wbalance, Every_line_that_monitor_has_shown_when_it_is_killed_is_in_the_log) {
    const TemporaryFile log;
    const Ran ran = RunShell("timeout -s KILL 3 " + std::string(WBALANCE_SIM) + " " + kBalance +
                             " --load 12.34 -- " + WBALANCE + " monitor " + kBalance +
                             "@0 -i 0 -t 0 --json --log " + log.Path());
    std::istringstream lines(ran.output);
    std::string line;
    int count = 0;
    for (; std::getline(lines, line); ++count)
        EXPECT_THAT(log.Text(), HasSubstr(line + "\n"));
    EXPECT_GT(count, 0);
}

const std::string kMonitor = WBALANCE_SIM " " + kBalance +
                             " --load 12.34 -- " WBALANCE " monitor " + kBalance +
                             "@0 -i 0 -t 0 --json";

// Each line that was read is one whole reading.
void ExpectWholeReadings(const std::string& output) {
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        EXPECT_EQ(JsonOf(line)["value"].toDouble(), 12.34) << line;
    EXPECT_THAT(output, EndsWith("\n"));
}

TEST(Wbalance, Ctrl_C_and_SIGTERM_end_the_monitor_with_its_summary) {
    for (const int signal : {SIGINT, SIGTERM}) {
        StartedProgram monitor(kMonitor);
        EXPECT_TRUE(monitor.Reads("}\n{")) << monitor.Errors();
        monitor.Signal(signal);
        EXPECT_EQ(monitor.End(), 0);
        ExpectWholeReadings(monitor.Output());
        EXPECT_THAT(monitor.Errors(), StartsWith(kBalance + " /dev/ttyS0: "));
        EXPECT_THAT(monitor.Errors(), EndsWith(", lost 0 times\n"));
    }
}

TEST(Wbalance, Ctrl_C_ends_a_monitor_whose_reader_sleeps_with_its_summary) {
    StartedProgram monitor(kMonitor);
    monitor.LetThePipeFill();
    monitor.Signal(SIGINT);
    EXPECT_EQ(monitor.Wait(), 130);
    EXPECT_THAT(monitor.Errors(), StartsWith(kBalance + " /dev/ttyS0: "));
    EXPECT_THAT(monitor.Errors(),
                EndsWith(", lost 0 times\nwbalance: interrupted; the reader of standard output did "
                         "not take all of it\n"));
    while (monitor.Read()) {
    }
    ExpectWholeReadings(monitor.Output());
}

TEST(Wbalance, A_reader_that_sleeps_and_wakes_up_gets_every_line_whole) {
    StartedProgram monitor(kMonitor + " -n 40");
    monitor.LetThePipeFill();
    EXPECT_EQ(monitor.End(), 0);
    ExpectWholeReadings(monitor.Output());
    EXPECT_EQ(std::count(monitor.Output().begin(), monitor.Output().end(), '\n'), 40);
}

TEST(Wbalance, Ctrl_C_ends_any_command_with_its_own_exit_code) {
    for (const std::string& command :
         {"weigh -d " + kBalance + " -t 60", "tare -d " + kBalance + " -t 60",
          "doctor -d " + kBalance + " -t 60", std::string("detect"),
          "weigh -d " + kBalance + " -t 60 --json"}) {
        StartedProgram program(std::string(WBALANCE_SIM) + " " + kBalance + " --fault silent -- " +
                               "sh -c 'echo started; exec " + WBALANCE + " " + command + "'");
        EXPECT_TRUE(program.Reads("started"));
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        program.Signal(SIGINT);
        EXPECT_EQ(program.End(), 130) << command;
        EXPECT_THAT(program.Errors(), EndsWith("wbalance: interrupted\n")) << command;
    }
}

TEST(Wbalance, Ctrl_C_at_the_record_that_is_still_to_come_is_an_interruption) {
    const TemporaryFile place;
    const std::string pipe = place.Path() + "-pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    StartedProgram program("sh -c 'echo started; exec " WBALANCE " replay " + pipe + "'");
    EXPECT_TRUE(program.Reads("started"));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    program.Signal(SIGINT);
    EXPECT_EQ(program.End(), 130);
    EXPECT_THAT(program.Errors(), StartsWith("wbalance: interrupted: "));
    unlink(pipe.c_str());
}

#ifdef LOGROTATE
// The file that is shipped with the service, for another log.
class Rotation {
 public:
    explicit Rotation(const std::string& log) {
        RunShell("sed 's|^/var/lib/wbalance/weights.jsonl|" + log + "|' " SHIPPED_LOGROTATE " >" +
                 settings_.Path());
    }
    Ran Run() const {
        return RunShell(LOGROTATE " --force --state " + state_.Path() + " " + settings_.Path());
    }

 private:
    const TemporaryFile settings_;
    const TemporaryFile state_;
};

TEST(Wbalance, The_shipped_rotation_loses_and_doubles_no_line_of_the_log) {
    const Ran folder = RunShell("mktemp -d");
    const std::string log = folder.output.substr(0, folder.output.size() - 1) + "/weights.jsonl";
    StartedProgram monitor(kMonitor + " --log " + log);
    EXPECT_TRUE(monitor.Reads("}\n{")) << monitor.Errors();
    const Rotation rotation(log);
    const Ran rotated = rotation.Run();
    EXPECT_EQ(rotated.exitCode, 0) << rotated.errors;
    const std::size_t before = monitor.Output().size();
    EXPECT_TRUE(monitor.ReadsMore(before + 1000)) << monitor.Errors();
    monitor.Signal(SIGINT);
    EXPECT_EQ(monitor.End(), 0);
    EXPECT_EQ(RunShell("ls " + log + "* | wc -l").output, "2\n");
    EXPECT_EQ(RunShell("cat " + log + "-* " + log).output, monitor.Output());
    RunShell("rm -r $(dirname " + log + ")");
}
#endif

TEST(Wbalance,
     SIGHUP_begins_a_new_log_where_there_is_no_terminal_and_ends_the_monitor_without_a_log) {
    const TemporaryFile log;
    StartedProgram logging(WBALANCE_SIM " " + kBalance + " --load 12.34 -- " WBALANCE " monitor " +
                           kBalance + "@0 -i 3600 -t 0 --json --log " + log.Path());
    EXPECT_TRUE(logging.Reads("}\n")) << logging.Errors();
    unlink(log.Path().c_str());
    logging.Signal(SIGHUP);
    while (access(log.Path().c_str(), F_OK) != 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    logging.Signal(SIGINT);
    EXPECT_EQ(logging.End(), 0);

    StartedProgram bare(kMonitor);
    EXPECT_TRUE(bare.Reads("}\n")) << bare.Errors();
    bare.Signal(SIGHUP);
    EXPECT_EQ(bare.End(), 0);
    EXPECT_THAT(bare.Errors(), EndsWith(", lost 0 times\n"));
}

TEST(Wbalance, A_port_that_is_not_there_is_an_object_for_who_asks_for_json) {
    for (const std::string& command :
         {"weigh -d " + kOtherBalance, "tare -d " + kOtherBalance, std::string("detect")}) {
        const Ran ran = Wbalance(command + " --json -p 4711 --usb");
        EXPECT_EQ(JsonOf(ran.output)["status"].toString(), "error") << command;
        EXPECT_EQ(JsonOf(ran.output)["port"].toString(), "/dev/ttyUSB4711") << command;
        EXPECT_THAT(JsonOf(ran.output)["message"].toString().toStdString(),
                    HasSubstr("there is no such port"));
        EXPECT_EQ(ran.errors.find("wbalance:"), std::string::npos) << ran.errors;
        EXPECT_EQ(ran.exitCode, 3);
    }
    EXPECT_EQ(Wbalance("weigh -d metler --json").output, "");
    EXPECT_EQ(Wbalance("weigh -d metler --json").exitCode, 2);
}

TEST(Wbalance, Detect_and_drivers_have_json) {
    const Ran found = WbalanceWith(kOtherBalance + " --load 3", "detect --json");
    EXPECT_EQ(JsonOf(found.output)["status"].toString(), "found");
    EXPECT_EQ(JsonOf(found.output)["driver"].toString().toStdString(), kOtherBalance);
    EXPECT_EQ(JsonOf(found.output)["line"].toString(), "9600,7E1");
    EXPECT_EQ(found.exitCode, 0);
    const QJsonObject driver = JsonOf(Wbalance("drivers " + kBalance + " --json").output);
    EXPECT_EQ(driver["class"].toString().toStdString(), kBalanceClass);
    EXPECT_EQ(driver["line"].toString(), "2400,7E1");
    EXPECT_TRUE(driver["operations"].toObject().contains("zero"));
    const std::string all = Wbalance("drivers --json").output;
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), std::ptrdiff_t(facts::All().size()));
}

TEST(Wbalance, Help_of_a_command_is_its_help) {
    EXPECT_EQ(Wbalance("help").output, Wbalance("--help").output);
    for (const char* command : {"weigh", "monitor", "factory-reset", "help"}) {
        const Ran ran = Wbalance("help " + std::string(command));
        EXPECT_EQ(ran.output, Wbalance(std::string(command) + " --help").output);
        EXPECT_THAT(ran.output, HasSubstr("Usage: wbalance " + std::string(command)));
    }
    EXPECT_THAT(Wbalance("help wiegh").errors,
                StartsWith("wbalance: there is no command \"wiegh\"; there are: weigh, "));
}

TEST(Wbalance, Monitor_ends_after_a_time_in_several_units) {
    for (const char* duration : {"1", "1s", "0.0166min"}) {
        const Ran ran =
            WbalanceWith(kBalance + " --load 12.34",
                         "monitor " + kBalance + "@0 -i 0 -t 0 --json --for " + duration);
        EXPECT_THAT(ran.errors, EndsWith(", lost 0 times\n")) << duration;
        EXPECT_EQ(ran.exitCode, 0);
    }
    for (const char* duration : {"nan", "-1", "0", "1 h", "1week", "", "1e300", "inf"}) {
        const Ran ran =
            Wbalance("monitor " + kOtherBalance + "@0 --for \"" + std::string(duration) + "\"");
        EXPECT_EQ(ran.errors, "wbalance: there is no duration \"" + std::string(duration) +
                                  "\"; write seconds, or a number with its unit: 90s, 10min, 8h, "
                                  "7d\n");
        EXPECT_EQ(ran.exitCode, 2);
    }
}

TEST(Wbalance, The_statistics_have_the_balances_decimals_and_leave_a_moving_pan_out) {
    const Ran still = WbalanceWith(kBalanceWithPanel + " --load 123.4567",
                                   "monitor " + kBalanceWithPanel + "@0 -n 2 -i 0 -t 0 --csv");
    EXPECT_THAT(still.errors, HasSubstr(": 2 readings, 2 weights, min 123.4567, max 123.4567, mean "
                                        "123.45670, sd 0.00000 g, drift +0.00000 g/min, lost 0"));
    const std::string restless = kThirdBalance + " --fault busy --load 5";
    const Ran left = WbalanceWith(restless, "monitor " + kThirdBalance + "@0 -n 2 -i 0 -t 0 --csv");
    EXPECT_THAT(left.errors,
                HasSubstr(": 2 readings, 0 weights (2 dynamic ones left out), lost 0 times"));
    const Ran counted =
        WbalanceWith(restless, "monitor " + kThirdBalance + "@0 -n 2 -i 0 -t 0 --csv --dynamic");
    EXPECT_THAT(counted.errors, HasSubstr(": 2 readings, 2 weights (2 dynamic ones among them), "
                                          "min "));
}

TEST(Wbalance, A_balance_is_back_no_later_than_the_weight_behind_it) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34 --fault unplug@1s+2s",
                                 "monitor " + kBalance + "@0 -n 12 -i 0 -t 0 --json");
    std::istringstream lines(ran.output);
    std::string line;
    QString before;
    bool back = false;
    while (std::getline(lines, line)) {
        const QJsonObject object = JsonOf(line);
        EXPECT_LE(before.toStdString(), object["time"].toString().toStdString()) << line;
        before = object["time"].toString();
        back = back || object["status"].toString() == "back";
    }
    EXPECT_TRUE(back);
}

TEST(Wbalance, Monitor_finds_an_adapter_again_that_comes_back_under_another_number) {
    const TemporaryFile place;
    const std::string link = place.Path() + "-link";
    const Ran ran =
        RunShell("ln -s /dev/ttyUSB0 " + link + "; (sleep 1.5; ln -sfn /dev/ttyUSB1 " + link +
                 ") & " + WBALANCE_SIM + " " + kBalance +
                 " --usb --load 12.34 --fault unplug=/dev/ttyUSB1@1s+1s -- " + WBALANCE +
                 " monitor " + kBalance + "@" + link + " -n 12 -i 0 -t 0 --json; rm " + link);
    EXPECT_THAT(ran.output, HasSubstr("\"message\":\"at /dev/ttyUSB1\""));
    EXPECT_THAT(ran.output, HasSubstr("\"port\":\"" + link + "\""));
}

TEST(Wbalance, A_balance_is_weighed_tared_and_zeroed) {
    const Ran weighed =
        WbalanceWith(kOtherBalance + " --load 8.5", "weigh -d " + kOtherBalance + " -t 0 --csv");
    EXPECT_THAT(weighed.output, HasSubstr(",weight,8.5"));
    EXPECT_EQ(WbalanceWith(kOtherBalance + " --load 8.5", "tare -d " + kOtherBalance).output,
              "tared\n");
    EXPECT_EQ(WbalanceWith(kOtherBalance, "zero -d " + kOtherBalance).output, "zeroed\n");
}

TEST(Wbalance, A_log_on_a_full_disk_ends_the_monitor_and_is_no_loss_of_the_balance) {
    const Ran ran = WbalanceWith(kBalance + " --load 12.34",
                                 "monitor " + kBalance + "@0 -i 0 -t 0 --json --log /dev/full");
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors,
              "wbalance: /dev/full: the log can't be written: No space left on device\n");
    EXPECT_EQ(ran.exitCode, 70);
}

TEST(Wbalance, A_log_at_the_limit_of_its_size_ends_the_monitor_with_a_sentence_and_no_lock_file) {
    const TemporaryFile log;
    const Ran ran =
        RunShell("ulimit -f 4; " WBALANCE_SIM " " + kBalance +
                 " --load 12.34 -- sh -c '" WBALANCE " monitor " + kBalance +
                 "@0 -m now -i 0 -t 0 --log " + log.Path() + " >/dev/null; echo $?; ls /var/lock'");
    EXPECT_EQ(ran.output.substr(0, 3), "70\n");
    EXPECT_THAT(ran.output, Not(HasSubstr("LCK..ttyS0")));
    EXPECT_EQ(ran.errors,
              "wbalance: " + log.Path() + ": the log can't be written: File too large\n");
}

// The library's trace takes an answer for a format, so that this one is some 200 times as long
// there.
TEST(Wbalance, An_answer_of_wide_directives_is_an_answer) {
    const TemporaryFile record;
    std::string text = "# wbalance record 1\n# driver: " + kBalance +
                       "\n# port: /dev/ttyS0\n# line: 2400,7E1\n"
                       "# date: 2026-11-21T03:12:00.000+00:00\n0 > SI\\r\\n\n300 < ";
    for (int i = 0; i < 186; ++i)
        text += "%999d";
    record.Write(text + "\n301 = weigh 0 0 now\n");
    const Ran ran = RunShell(WBALANCE_SIM " replay --fast " + record.Path() +
                             " -- " WBALANCE " weigh -d " + kBalance + " -t 0 -m now --json");
    EXPECT_THAT(ran.output, HasSubstr("\"status\":\"not-understood\""));
    EXPECT_GT(ran.output.size(), 186u * 999u);
    EXPECT_EQ(ran.exitCode, 5) << ran.errors;
}

}  // namespace
