// doctor and detect from outside: each diagnosis provoked by a fault of a simulated instrument.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <regex>

#include "RunProgram.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// What a command ends with at an instrument that does not do as it should.
struct Case {
    const char* name;
    const char* instrument;
    const char* arguments;
    const char* said;
    int exitCode;
};

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
    const Ran ran =
        WbalanceWith(GetParam().instrument, std::string("doctor ") + GetParam().arguments);
    EXPECT_THAT(ran.output,
                EndsWith(std::string("\ndiagnosis      /dev/ttyS0: ") + GetParam().said + "\n"));
    EXPECT_EQ(WithoutHints(ran.errors), "");
    EXPECT_EQ(ran.exitCode, GetParam().exitCode);
}

const Case kDiagnoses[] = {
    {"works", "mettler-toledo --load 3", "-d mettler-toledo -t 0",
     "everything works; `wbalance weigh --driver mettler-toledo --port /dev/ttyS0` reads the "
     "weight",
     0},
    {"works_at_other_line_settings", "mettler-toledo --load 3 --line 9600,8N1",
     "-d mettler-toledo -l 9600,8N1 -t 0",
     "everything works; `wbalance weigh --driver mettler-toledo --port /dev/ttyS0 --line 9600,8N1` "
     "reads the weight",
     0},
    {"another_makers_driver_and_no_weight", "radwag --load 3", "-d kern -l 9600,7E1 -t 0",
     "text comes back that the driver kern does not know; `wbalance detect` finds the instrument",
     5},
    {"in_pieces", "mettler-toledo --load 12.34 --line 300,7E1 --pace",
     "-d mettler-toledo -l 300,7E1",
     "the answer comes in more pieces than the three that the driver takes, and waiting longer "
     "does "
     "not help: use an FTDI adapter with its latency timer set to 255 ms; a higher baud rate on "
     "the "
     "balance and in --line may do, too",
     5},
    {"in_pieces_of_a_built_in_port", "sartorius --load 12.34 --pace=16550", "-d sartorius",
     "the answer comes in more pieces than the three that the driver takes, and waiting longer "
     "does "
     "not help: use an FTDI adapter with its latency timer set to 255 ms; a higher baud rate on "
     "the "
     "balance and in --line may do, too",
     5},
    {"in_few_pieces", "sartorius --load 12.34 --pace=ftdi:255", "-d sartorius",
     "everything works; `wbalance weigh --driver sartorius --port /dev/ttyS0` reads the weight", 0},
    {"silent", "mettler-toledo --fault silent", "-d mettler-toledo -t 0",
     "the port works but nothing comes back; is the balance switched on, is the cable the right "
     "one "
     "(straight or crossed), and does the balance send at 2400,7E1? `wbalance detect` tries other "
     "settings",
     4},
    {"eight_data_bits_for_seven_with_parity", "mettler-toledo --load 3",
     "-d mettler-toledo -l 2400,8N1",
     "the balance sends 7 data bits with parity and the port reads 8; use --line 2400,7E1 (or 7O1)",
     5},
    {"rubbish", "mettler-toledo --load 3 --fault noise", "-d mettler-toledo -t 0",
     "bytes come back but garbled: the baud rate is not that of the balance (`wbalance detect "
     "--thorough` tries others), or the cable picks up noise",
     5},
    {"another_baud_rate", "mettler-xs --load 3", "-d mettler-xs -l 2400,8N1 -t 0",
     "bytes come back but garbled: the baud rate is not that of the balance (`wbalance detect "
     "--thorough` tries others), or the cable picks up noise",
     5},
    {"an_echo", "denver-xl1800 --with echo=on --load 3", "-d denver-xl1800 -t 0",
     "what is sent comes back: the line is looped, or the instrument echoes; switch its echo off",
     5},
    {"another_makers_driver", "mettler-toledo --load 3", "-d radwag -l 2400,7E1 -t 0",
     "the answer is not one for the driver radwag; try --driver mettler-toledo", 5},
    {"cut_off", "mettler-toledo --load 3 --fault truncated=8", "-d mettler-toledo -t 0",
     "the answer has no line end: either it is cut off (wait longer with --timeout, look for a "
     "loose "
     "cable), or the line settings are not those of the balance (`wbalance detect` tries others)",
     5},
    {"cut_off_so_that_it_looks_like_another_makers", "sartorius --load 12.5 --fault truncated=13",
     "-d sartorius -t 0",
     "the answer has no line end: either it is cut off (wait longer with --timeout, look for a "
     "loose "
     "cable), or the line settings are not those of the balance (`wbalance detect` tries others)",
     5},
    {"cut_off_in_its_number", "mettler-pm --load 12.5 --fault truncated=12", "-d mettler-pm -t 0",
     "the answer has no line end: either it is cut off (wait longer with --timeout, look for a "
     "loose "
     "cable), or the line settings are not those of the balance (`wbalance detect` tries others)",
     11},
    {"more_digits_than_the_driver_takes",
     "kern --with digits=7 --with readability=0.001 --load 12.345", "-d kern -t 0",
     "the record is not one that the driver takes whole (the driver reads it as 12.34); choose the "
     "balance's standard print format",
     11},
    {"a_record_that_the_driver_does_not_take", "kern --with acknowledgement=none --load 12.5",
     "-d kern -t 0",
     "the record is not one that the driver takes whole (the driver does not take this answer); "
     "choose "
     "the balance's standard print format",
     5},
    {"a_tare_line_ahead_that_the_driver_takes_for_the_weight",
     "scale-house --with ticket=tare-line-first --load 12.5", "-d scale-house -t 0",
     "the record is not one that the driver takes whole (the driver reads it as 0); choose the "
     "balance's "
     "standard print format",
     5},
    {"a_line_of_another_kind", "scale-house --with ticket=total-word --load 12.5",
     "-d scale-house -t 0",
     "text comes back that the driver scale-house does not know (the line shows an accumulated "
     "total); "
     "`wbalance detect` finds the instrument",
     5},
    {"unknown_text", "setra-el2000s --with form=l-series --load 3", "-d setra-el2000s -t 0",
     "text comes back that the driver setra-el2000s does not know; `wbalance detect` finds the "
     "instrument",
     5},
    {"overload", "mettler-toledo --fault overload", "-d mettler-toledo -t 0",
     "the line works; overload: more is on the pan than the balance can weigh; take something off",
     6},
    {"underload", "mettler-toledo --fault underload", "-d mettler-toledo -t 0",
     "the line works; underload: less than the balance can weigh; is the pan in its place?", 7},
    {"no_stable_weight", "mettler-toledo --fault busy", "-d mettler-toledo -t 0",
     "the line works; no weight yet; wait until the pan is at rest and the balance has finished",
     8},
    {"a_pan_that_is_not_at_rest", "kern --fault busy", "-d kern -t 0",
     "the line works, but the pan is not at rest; keep draughts and vibration away, or read with "
     "--mode "
     "now",
     8},
    {"stand_by", "sartorius --with display=standby", "-d sartorius -t 0",
     "the line works; the balance is in stand-by or does not display a weight; switch it on", 9},
    {"calibration", "sartorius --with display=calibration", "-d sartorius -t 0",
     "the line works; the balance is calibrating, testing or taring; wait until it has finished",
     9},
    {"an_error", "sartorius --with display=error", "-d sartorius -t 0",
     "the line works; the balance reports an error (Err  54)", 9},
    {"another_unit", "ohaus --with unit=kg --load 3", "-d ohaus -t 0",
     "the line works; the weight is not in grams; set the balance's unit to g", 10},
    {"no_unit", "ohaus --with numeric-only=on --load 3", "-d ohaus -t 0",
     "the line works; the weight is not in grams; set the balance's unit to g (no unit was sent)",
     10},
};

INSTANTIATE_TEST_SUITE_P(Of, Doctor, testing::ValuesIn(kDiagnoses), NameOf);

class Weigh : public testing::TestWithParam<Case> {};

TEST_P(Weigh, Says_what_came_instead_of_a_weight) {
    const Ran ran =
        WbalanceWith(GetParam().instrument, std::string("weigh ") + GetParam().arguments);
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.errors, std::string("wbalance: /dev/ttyS0: ") + GetParam().said + "\n");
    EXPECT_EQ(ran.exitCode, GetParam().exitCode);
}

const Case kNoWeights[] = {
    {"silence", "mettler-toledo --fault silent", "-d mettler-toledo -t 0",
     "no answer; is the balance switched on, the cable plugged in, and are the line settings those "
     "of "
     "the balance?",
     4},
    {"a_line_of_another_kind", "scale-house --with ticket=total-word --load 12.5",
     "-d scale-house -t 0",
     "an answer came that is not a weight of this balance; is this the right driver and are the "
     "line "
     "settings those of the balance? (the line shows an accumulated total); it sent \" 12.50 g "
     "TOTAL\\r\\n\"",
     5},
    {"a_tare_line_ahead", "scale-house --with ticket=tare-line-first --load 12.5",
     "-d scale-house -t 0",
     "an answer came that is not a weight of this balance; is this the right driver and are the "
     "line "
     "settings those of the balance? (the driver reads it as 0); it sent \" 0.00 g T\\r\\n 12.50 "
     "g\\r\\n\"",
     5},
    {"more_digits_than_the_driver_takes",
     "kern --with digits=7 --with readability=0.001 --load 12.345", "-d kern -t 0",
     "the record is cut off, or longer than the driver takes: digits are missing (the driver reads "
     "it as "
     "12.34); it sent \"A00\\r\\n+  12.345 G S\\r\\n\"",
     11},
    {"overload", "mettler-toledo --fault overload", "-d mettler-toledo -t 0",
     "overload: more is on the pan than the balance can weigh; take something off; it sent \"S "
     "+\\r\\n\"",
     6},
    {"underload", "mettler-toledo --fault underload", "-d mettler-toledo -t 0",
     "underload: less than the balance can weigh; is the pan in its place?; it sent \"S -\\r\\n\"",
     7},
    {"no_stable_weight", "denver-xl1800 --fault busy --load 3", "-d denver-xl1800 -t 0",
     "no stable weight; wait until the pan is at rest, or read with --mode now; it sent \"U+     "
     "3.00 "
     "g\\r\\n\"",
     8},
    {"a_balance_that_answers_only_when_it_is_stable", "mettler-xs --fault busy",
     "-d mettler-xs -t 0",
     "no stable weight; wait until the pan is at rest, or read with --mode now (earlier commands "
     "were "
     "answered, this one not: the balance may be waiting for stability); it sent \"I4 A "
     "\"1126493049\"\\r\\n\"",
     8},
    {"not_even_a_moving_weight_which_was_asked_for", "mettler-xs --fault busy",
     "-d mettler-xs -t 0 -m now",
     "no weight yet; wait until the pan is at rest and the balance has finished; it sent \"S "
     "I\\r\\n\"",
     8},
    {"nothing_but_a_sign_of_life_to_the_request_for_a_moving_weight", "sartorius --fault busy",
     "-d sartorius -t 0 -m now",
     "no weight yet; wait until the pan is at rest and the balance has finished (the balance "
     "answers other commands, so the pan moves or it is busy); it sent \"LA620S        \\r\\n\"",
     8},
    {"stand_by", "sartorius --with display=standby", "-d sartorius -t 0",
     "the balance is in stand-by or does not display a weight; switch it on; it sent \"     OFF    "
     "  \\r\\n\"",
     9},
    {"calibration", "sartorius --with display=calibration", "-d sartorius -t 0",
     "the balance is calibrating, testing or taring; wait until it has finished; it sent \"      C "
     "      \\r\\n\"",
     9},
    {"an_error", "sartorius --with display=error", "-d sartorius -t 0",
     "the balance reports an error (Err  54); it sent \"   Err  54    \\r\\n\"", 9},
    {"another_unit", "ohaus --with unit=kg --load 3", "-d ohaus -t 0",
     "the weight is not in grams; set the balance's unit to g; it sent \"     0.00300 kg     "
     "\\r\\n\"",
     10},
};

INSTANTIATE_TEST_SUITE_P(Of, Weigh, testing::ValuesIn(kNoWeights), NameOf);

TEST(DoctorAtThePort, One_that_is_not_there) {
    const Ran ran = Wbalance("doctor -d mettler-toledo -p 4711 --usb");
    EXPECT_EQ(ran.output,
              "port           /dev/ttyUSB4711\n"
              "diagnosis      /dev/ttyUSB4711: there is no such port; is the adapter plugged in? "
              "`wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_pulled_adapter) {
    const Ran ran =
        WbalanceWith("mettler-toledo --usb --fault unplug", "doctor -d mettler-toledo -p 0 --usb");
    EXPECT_EQ(ran.output,
              "port           /dev/ttyUSB0\n"
              "diagnosis      /dev/ttyUSB0: there is no such port; is the adapter plugged in? "
              "`wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_stable_name_whose_adapter_is_not_plugged_in) {
    const Ran ran = Wbalance("doctor -d mettler-toledo -p /tmp/no/such/name");
    EXPECT_EQ(ran.output,
              "diagnosis      /tmp/no/such/name: No such file or directory; is the adapter plugged "
              "in? `wbalance ports` lists the ports that are there\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_name_that_leads_to_something_else) {
    const Ran ran = Wbalance("doctor -d mettler-toledo -p /dev/stdin </dev/null");
    EXPECT_EQ(ran.output,
              "diagnosis      /dev/stdin is /dev/null: only /dev/ttyS<number> and "
              "/dev/ttyUSB<number> can be used; connect the balance to such a port\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorAtThePort, A_program_that_has_it_open) {
    const Ran ran =
        RunShell(WBALANCE_SIM " mettler-toledo -- sh -c 'exec 3<>/dev/ttyS0; echo $$; " WBALANCE
                              " doctor -d mettler-toledo 3>&-'");
    EXPECT_EQ(ran.output, std::to_string(std::atoi(ran.output.c_str())) +
                              "\nport           /dev/ttyS0\n"
                              "diagnosis      /dev/ttyS0: the port is in use; it is held by sh "
                              "(process " +
                              std::to_string(std::atoi(ran.output.c_str())) +
                              "): end that program first\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Detect, Prints_the_command_line_and_the_call_for_what_it_found) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3 --usb --port 2", "detect -p 2 --usb");
    EXPECT_EQ(
        ran.output,
        "Mettler Toledo, any balance that speaks MT-SICS, at 2400,7E1 on /dev/ttyUSB2\n"
        "  wbalance weigh --driver mettler-toledo --port 2 --usb\n"
        "  WbalanceMettlerToledo balance; balance.SetCommPort(2); "
        "balance.SetCommConfig(2400, 2, 7, 0, 0, 1, 'U');\n"
        "  The balance does not tell its model. If it is one of these, its own driver can more:\n"
        "  --driver mettler-pr2003   PR2003 and the PR line\n"
        "  --driver mettler-xs       XS\n"
        "  --driver mettler-sb32001  SB32001\n");
    EXPECT_THAT(ran.errors, StartsWith("trying 2400,7E1\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Detect, Finds_the_line_settings_too) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3 --line 9600,8N1", "detect");
    EXPECT_THAT(ran.output, HasSubstr("--driver mettler-toledo --port 0 --line 9600,8N1\n"));
}

// Each at the settings that it is delivered with, after having heard what was tried before.
class DetectEach : public testing::TestWithParam<const char*> {};

TEST_P(DetectEach, Is_found_at_its_own_settings) {
    const std::string name = GetParam();
    const Ran ran = WbalanceWith(name + " --load 3", "detect");
    EXPECT_THAT(ran.output, HasSubstr("  wbalance weigh --driver " + name + " --port 0\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(Instruments, DetectEach,
                         testing::Values("mettler-toledo", "mettler-pm", "sartorius", "ohaus",
                                         "radwag", "kern", "gibertini", "denver-xl1800",
                                         "setra-el2000s", "scale-house"),
                         [](const auto& each) {
                             std::string name = each.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(Detect, Names_the_drivers_for_an_MT_SICS_balance_that_does_not_tell_its_model) {
    for (const char* name : {"mettler-pr2003", "mettler-sb32001"}) {
        const Ran ran =
            WbalanceWith(std::string(name) + " --load 3 --with model=level-1", "detect");
        EXPECT_THAT(ran.output, HasSubstr("--driver mettler-toledo --port 0\n"));
        EXPECT_THAT(ran.output, HasSubstr(name));
    }
}

TEST(Detect, Names_the_driver_of_the_model_that_an_MT_SICS_balance_tells) {
    for (const std::string name : {"mettler-pr2003", "mettler-sb32001"}) {
        const Ran ran = WbalanceWith(name + " --load 3", "detect");
        EXPECT_THAT(ran.output, HasSubstr("wbalance weigh --driver " + name + " --port 0\n"));
    }
}

TEST(Detect, Changes_nothing_on_the_balance) {
    const TemporaryFile log;
    WbalanceWith("mettler-toledo --load 3 --log " + log.Path(), "detect");
    EXPECT_THAT(log.Text(), HasSubstr(" > SI\\r\\n\n"));
    for (const char* command : {"@", "Z", "T", "TA", "B"})
        EXPECT_THAT(log.Text(), testing::Not(HasSubstr(std::string("> ") + command))) << command;
}

TEST(Detect, Asks_nothing_while_another_program_has_the_port_open) {
    const Ran ran =
        RunShell(WBALANCE_SIM " radwag --load 3 -- sh -c 'exec 3<>/dev/ttyS0; echo $$; " WBALANCE
                              " detect 3>&-'");
    EXPECT_EQ(ran.errors, "wbalance: /dev/ttyS0: the port is in use; it is held by sh (process " +
                              std::to_string(std::atoi(ran.output.c_str())) +
                              "): end that program first\n");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Detect, Says_of_rubbish_that_it_may_be_noise) {
    const Ran ran = WbalanceWith("radwag --load 3 --fault noise", "detect");
    EXPECT_THAT(
        ran.errors,
        HasSubstr("wbalance: /dev/ttyS0: bytes come back but garbled: the line settings are "
                  "not those of the balance, or the cable picks up noise: \""));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Detect, Says_that_nothing_comes_back) {
    const Ran ran = WbalanceWith("mettler-toledo --fault silent", "detect");
    EXPECT_THAT(ran.errors,
                HasSubstr("wbalance: /dev/ttyS0: nothing comes back: switch the balance on, "));
    EXPECT_EQ(ran.exitCode, 4);
}

}  // namespace
