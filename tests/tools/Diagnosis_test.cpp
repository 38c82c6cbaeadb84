// doctor and detect from outside: each diagnosis provoked by a fault of a simulated instrument.

#include <gmock/gmock.h>

#include <cstdlib>
#include <regex>

#include "Examples.h"
#include "Facts.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kBalanceClass;
using examples::kBalanceWithPanel;
using examples::kOtherBalance;
using examples::kThirdBalance;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// What a command ends with at an instrument that does not do as it should.
struct Case {
    std::string name;
    std::string instrument;
    std::string arguments;
    std::string said;
    int exitCode;
};

// With what each instrument adds of its own.
std::vector<Case> WithEach(std::vector<Case> cases,
                           std::vector<facts::Said> facts::Instrument::*field) {
    for (const auto& one : facts::All()) {
        for (const auto& said : one.*field) {
            cases.push_back({facts::TestNameOf(one.name) + "_" + said.name,
                             one.name + " " + said.simulated,
                             "-d " + one.name + " " + said.arguments, said.says, said.exitCode});
        }
    }
    return cases;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

/// What the command itself says on standard error: beside it the simulator says that the settings
/// differ.
std::string WithoutHints(const std::string& errors) {
    return std::regex_replace(errors, std::regex("wbalance-sim: the host speaks at [^\n]*\n"), "");
}

class Doctor : public testing::TestWithParam<Case> {};

TEST_P(Doctor, Ends_with_the_diagnosis) {
    const Ran ran = WbalanceWith(GetParam().instrument, "doctor " + GetParam().arguments);
    EXPECT_THAT(ran.output, EndsWith("\ndiagnosis      /dev/ttyS0: " + GetParam().said + "\n"));
    EXPECT_EQ(WithoutHints(ran.errors), "");
    EXPECT_EQ(ran.exitCode, GetParam().exitCode);
}

const std::vector<Case> kDiagnoses = {
    {"works", kBalance + " --load 3", "-d " + kBalance + " -t 0",
     "everything works; `wbalance weigh --driver " + kBalance +
         " --port /dev/ttyS0` reads the weight",
     0},
    {"works_at_other_line_settings", kBalance + " --load 3 --line 9600,8N1",
     "-d " + kBalance + " -l 9600,8N1 -t 0",
     "everything works; `wbalance weigh --driver " + kBalance +
         " --port /dev/ttyS0 --line 9600,8N1` reads the weight",
     0},
    {"another_makers_driver_and_no_weight", kOtherBalance + " --load 3",
     "-d " + kThirdBalance + " -l 9600,7E1 -t 0",
     "text comes back that the driver " + kThirdBalance +
         " does not know; `wbalance detect` finds the instrument",
     5},
    {"in_pieces", kBalance + " --load 12.34 --line 300,7E1 --pace",
     "-d " + kBalance + " -l 300,7E1",
     "the answer comes in more pieces than the three that the driver takes, and waiting longer "
     "does not help: use an FTDI adapter with its latency timer set to 255 ms; a higher baud rate "
     "on the balance and in --line may do, too",
     5},
    {"silent", kBalance + " --fault silent", "-d " + kBalance + " -t 0",
     "the port works but nothing comes back; is the balance switched on, is the cable the right "
     "one (straight or crossed), and does the balance send at 2400,7E1? `wbalance detect` tries "
     "other settings",
     4},
    {"eight_data_bits_for_seven_with_parity", kBalance + " --load 3",
     "-d " + kBalance + " -l 2400,8N1",
     "the balance sends 7 data bits with parity and the port reads 8; use --line 2400,7E1 (or 7O1)",
     5},
    {"rubbish", kBalance + " --load 3 --fault noise", "-d " + kBalance + " -t 0",
     "bytes come back but garbled: the baud rate is not that of the balance (`wbalance detect "
     "--thorough` tries others), or the cable picks up noise",
     5},
    {"another_baud_rate", kBalanceWithPanel + " --load 3",
     "-d " + kBalanceWithPanel + " -l 2400,8N1 -t 0",
     "bytes come back but garbled: the baud rate is not that of the balance (`wbalance detect "
     "--thorough` tries others), or the cable picks up noise",
     5},
    {"another_makers_driver", kBalance + " --load 3", "-d " + kOtherBalance + " -l 2400,7E1 -t 0",
     "the answer is not one for the driver " + kOtherBalance + "; try --driver " + kBalance, 5},
    {"cut_off", kBalance + " --load 3 --fault truncated=8", "-d " + kBalance + " -t 0",
     "the answer has no line end: either it is cut off (wait longer with --timeout, look for a "
     "loose cable), or the line settings are not those of the balance (`wbalance detect` tries "
     "others)",
     5},
    {"overload", kBalance + " --fault overload", "-d " + kBalance + " -t 0",
     "the line works; overload: more is on the pan than the balance can weigh; take something off",
     6},
    {"underload", kBalance + " --fault underload", "-d " + kBalance + " -t 0",
     "the line works; underload: less than the balance can weigh; is the pan in its place?", 7},
    {"no_stable_weight", kBalance + " --fault busy", "-d " + kBalance + " -t 0",
     "the line works; no weight yet; wait until the pan is at rest and the balance has finished",
     8},
};

INSTANTIATE_TEST_SUITE_P(Of, Doctor,
                         testing::ValuesIn(WithEach(kDiagnoses, &facts::Instrument::diagnoses)),
                         NameOf);

class Weigh : public testing::TestWithParam<Case> {};

TEST_P(Weigh, Says_what_came_instead_of_a_weight) {
    const Ran ran = WbalanceWith(GetParam().instrument, "weigh " + GetParam().arguments);
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors, "wbalance: /dev/ttyS0: " + GetParam().said + "\n");
    EXPECT_EQ(ran.exitCode, GetParam().exitCode);
}

const std::vector<Case> kNoWeights = {
    {"silence", kBalance + " --fault silent", "-d " + kBalance + " -t 0",
     "no answer; is the balance switched on, the cable plugged in, and are the line settings those "
     "of the balance?",
     4},
    {"overload", kBalance + " --fault overload", "-d " + kBalance + " -t 0",
     "overload: more is on the pan than the balance can weigh; take something off; it sent \"S "
     "+\\r\\n\"",
     6},
    {"underload", kBalance + " --fault underload", "-d " + kBalance + " -t 0",
     "underload: less than the balance can weigh; is the pan in its place?; it sent \"S -\\r\\n\"",
     7},
    {"a_balance_that_answers_only_when_it_is_stable", kBalanceWithPanel + " --fault busy",
     "-d " + kBalanceWithPanel + " -t 0",
     "no stable weight; wait until the pan is at rest, or read with --mode now (earlier commands "
     "were answered, this one not: the balance may be waiting for stability); it sent \"I4 A "
     "\"1126493049\"\\r\\n\"",
     8},
    {"not_even_a_moving_weight_which_was_asked_for", kBalanceWithPanel + " --fault busy",
     "-d " + kBalanceWithPanel + " -t 0 -m now",
     "no weight yet; wait until the pan is at rest and the balance has finished; it sent \"S "
     "I\\r\\n\"",
     8},
};

INSTANTIATE_TEST_SUITE_P(Of, Weigh,
                         testing::ValuesIn(WithEach(kNoWeights, &facts::Instrument::noWeights)),
                         NameOf);

TEST(DoctorAtThePort, One_that_is_not_there) {
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p 4711 --usb");
    EXPECT_EQ(ran.output,
              "port           /dev/ttyUSB4711\n"
              "diagnosis      /dev/ttyUSB4711: there is no such port; is the adapter plugged in? "
              "`wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_pulled_adapter) {
    const Ran ran =
        WbalanceWith(kBalance + " --usb --fault unplug", "doctor -d " + kBalance + " -p 0 --usb");
    EXPECT_EQ(ran.output,
              "port           /dev/ttyUSB0\n"
              "diagnosis      /dev/ttyUSB0: there is no such port; is the adapter plugged in? "
              "`wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_stable_name_whose_adapter_is_not_plugged_in) {
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p /tmp/no/such/name");
    EXPECT_EQ(ran.output,
              "diagnosis      /tmp/no/such/name: No such file or directory; is the adapter plugged "
              "in? `wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_name_that_leads_to_something_else) {
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p /dev/stdin </dev/null");
    EXPECT_EQ(ran.output,
              "diagnosis      /dev/stdin is /dev/null: only /dev/ttyS<number> and "
              "/dev/ttyUSB<number> can be used; connect the balance to such a port\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_program_that_has_it_open) {
    const Ran ran = RunShell(WBALANCE_SIM " " + kBalance +
                             " -- sh -c 'exec 3<>/dev/ttyS0; echo $$; " WBALANCE " doctor -d " +
                             kBalance + " 3>&-'");
    EXPECT_EQ(ran.output, std::to_string(std::atoi(ran.output.c_str())) +
                              "\nport           /dev/ttyS0\n"
                              "diagnosis      /dev/ttyS0: the port is in use; it is held by sh "
                              "(process " +
                              std::to_string(std::atoi(ran.output.c_str())) +
                              "): end that program first\n");
    EXPECT_EQ(ran.exitCode, 3);
}

// The drivers of models that only their answer to a question for the model tells apart.
std::string Models() {
    std::string lines;
    for (const auto& one : facts::All()) {
        if (one.modelAnswer.empty() || !one.known.empty()) continue;
        lines += "  --driver " + one.name + std::string(16 - one.name.size(), ' ') + " " +
                 one.title.substr(one.title.find(", ") + 2) + "\n";
    }
    return lines;
}

TEST(Detect, Prints_the_command_line_and_the_call_for_what_it_found) {
    const Ran ran = WbalanceWith(kBalance + " --load 3 --usb --port 2", "detect -p 2 --usb");
    EXPECT_EQ(ran.output,
              "Mettler Toledo, any balance that speaks MT-SICS, at 2400,7E1 on /dev/ttyUSB2\n"
              "  wbalance weigh --driver " +
                  kBalance +
                  " --port 2 --usb\n"
                  "  " +
                  kBalanceClass +
                  " balance; balance.SetCommPort(2); "
                  "balance.SetCommConfig(2400, 2, 7, 0, 0, 1, 'U');\n"
                  "  model MT-SICS, serial number 1126493049, software 1.20\n"
                  "  If it is one of these models, its own driver can more:\n" +
                  Models());
    EXPECT_THAT(ran.errors, StartsWith("trying 2400,7E1\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Detect, Finds_the_line_settings_too) {
    const Ran ran = WbalanceWith(kBalance + " --load 3 --line 9600,8N1", "detect");
    EXPECT_THAT(ran.output, HasSubstr("--driver " + kBalance + " --port 0 --line 9600,8N1\n"));
}

// Each at the settings that it is delivered with, after having heard what was tried before.
class DetectEach : public testing::TestWithParam<std::string> {};

TEST_P(DetectEach, Is_found_at_its_own_settings) {
    const Ran ran = WbalanceWith(GetParam() + " --load 3", "detect");
    EXPECT_THAT(ran.output, HasSubstr("  wbalance weigh --driver " + GetParam() + " --port 0\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(Instruments, DetectEach, testing::ValuesIn(facts::Names()),
                         [](const auto& one) { return facts::TestNameOf(one.param); });

TEST(Detect, Names_the_drivers_for_a_balance_that_does_not_tell_its_model) {
    for (const auto& one : facts::All()) {
        if (one.hidesItsModel.empty()) continue;
        const Ran ran = WbalanceWith(one.name + " --load 3 " + one.hidesItsModel, "detect");
        EXPECT_THAT(ran.output, HasSubstr("--driver " + kBalance + " --port 0\n"));
        EXPECT_THAT(ran.output, HasSubstr("  --driver " + one.name + " "));
    }
}

TEST(Detect, Changes_nothing_on_the_balance) {
    const TemporaryFile log;
    WbalanceWith(kBalance + " --load 3 --log " + log.Path(), "detect");
    EXPECT_THAT(log.Text(), HasSubstr(" > SI\\r\\n\n"));
    for (const char* command : {"@", "Z", "T", "TA", "B"})
        EXPECT_THAT(log.Text(), testing::Not(HasSubstr(std::string("> ") + command))) << command;
}

TEST(Detect, Asks_nothing_while_another_program_has_the_port_open) {
    const Ran ran =
        RunShell(WBALANCE_SIM " " + kOtherBalance +
                 " --load 3 -- sh -c 'exec 3<>/dev/ttyS0; echo $$; " WBALANCE " detect 3>&-'");
    EXPECT_EQ(ran.errors, "wbalance: /dev/ttyS0: the port is in use; it is held by sh (process " +
                              std::to_string(std::atoi(ran.output.c_str())) +
                              "): end that program first\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Detect, Says_of_rubbish_that_it_may_be_noise) {
    const Ran ran = WbalanceWith(kOtherBalance + " --load 3 --fault noise", "detect");
    EXPECT_THAT(
        ran.errors,
        HasSubstr("wbalance: /dev/ttyS0: bytes come back but garbled: the line settings are "
                  "not those of the balance, or the cable picks up noise: \""));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Detect, Says_that_nothing_comes_back) {
    const Ran ran = WbalanceWith(kBalance + " --fault silent", "detect");
    EXPECT_THAT(ran.errors,
                HasSubstr("wbalance: /dev/ttyS0: nothing comes back: switch the balance on, "));
    EXPECT_EQ(ran.exitCode, 4);
}

}  // namespace
