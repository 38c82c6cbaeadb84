// doctor and detect from outside: each diagnosis provoked by a fault of a simulated instrument.

#include <gmock/gmock.h>

#include <algorithm>

#include "RunProgram.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr char kDoctor[] = "doctor -d mettler-toledo -t 0";

TEST(Doctor, A_balance_that_works_is_said_to_work) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3", kDoctor);
    EXPECT_THAT(ran.output,
                HasSubstr("diagnosis      /dev/ttyS0: everything works; `wbalance weigh "
                          "--driver mettler-toledo --port /dev/ttyS0` reads the "
                          "weight\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Doctor, A_silent_balance) {
    const Ran ran = WbalanceWith("mettler-toledo --fault silent", kDoctor);
    EXPECT_THAT(ran.output, HasSubstr("the port works but nothing comes back"));
    EXPECT_EQ(ran.exitCode, 4);
}

TEST(Doctor, Eight_data_bits_for_seven_with_parity) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3", "doctor -d mettler-toledo -l 2400,8N1");
    EXPECT_THAT(ran.output,
                HasSubstr("the balance sends 7 data bits with parity and the port reads "
                          "8; use --line 2400,7E1 (or 7O1)\n"));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, Rubbish_on_the_line) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3 --fault noise", kDoctor);
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, Another_makers_driver) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3", "doctor -d radwag -l 2400,7E1 -t 0");
    EXPECT_THAT(ran.output, HasSubstr("try --driver mettler-toledo\n"));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, An_overloaded_balance) {
    const Ran ran = WbalanceWith("mettler-toledo --fault overload", kDoctor);
    EXPECT_THAT(ran.output, HasSubstr("the line works; overload: "));
    EXPECT_EQ(ran.exitCode, 6);
}

TEST(Doctor, An_underloaded_balance) {
    const Ran ran = WbalanceWith("mettler-toledo --fault underload", kDoctor);
    EXPECT_THAT(ran.output, HasSubstr("the line works; underload: "));
    EXPECT_EQ(ran.exitCode, 7);
}

TEST(Doctor, A_busy_balance) {
    const Ran ran = WbalanceWith("mettler-toledo --fault busy", kDoctor);
    EXPECT_EQ(ran.exitCode, 8);
}

TEST(Doctor, An_answer_that_is_cut_off) {
    const Ran ran = WbalanceWith("mettler-toledo --load 3 --fault truncated=8", kDoctor);
    EXPECT_THAT(ran.output, HasSubstr("the answer has no line end"));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, A_pan_that_is_not_at_rest) {
    const Ran ran = WbalanceWith("kern --fault busy", "doctor -d kern -t 0");
    EXPECT_THAT(ran.output, HasSubstr("the line works, but the pan is not at rest; "));
    EXPECT_EQ(ran.exitCode, 8);
}

TEST(Doctor, A_baud_rate_that_is_not_the_balances) {
    const Ran ran = WbalanceWith("mettler-xs --load 3", "doctor -d mettler-xs -l 2400,8N1 -t 0");
    EXPECT_THAT(ran.output, HasSubstr("the baud rate is not that of the balance"));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, An_instrument_that_echoes) {
    const Ran ran =
        WbalanceWith("denver-xl1800 --with echo=on --load 3", "doctor -d denver-xl1800 -t 0");
    EXPECT_THAT(ran.output, HasSubstr("what is sent comes back: "));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, An_unusual_print_format_with_the_one_to_choose) {
    const Ran ran =
        WbalanceWith("gibertini --with protocol=euro --load 3", "doctor -d gibertini -t 0");
    EXPECT_THAT(ran.output, HasSubstr("does not know (a bare number: choose "));
    EXPECT_EQ(ran.exitCode, 5);
}

TEST(Doctor, A_balance_in_stand_by_in_calibration_and_with_an_error) {
    const std::pair<const char*, const char*> displays[] = {
        {"standby", "the line works; the balance is in stand-by"},
        {"calibration", "the line works; the balance is calibrating, testing or taring"},
        {"error", "the line works; the balance reports an error (Err  54)"}};
    for (const auto& [display, sentence] : displays) {
        const Ran ran = WbalanceWith(std::string("sartorius --with display=") + display,
                                     "doctor -d sartorius -t 0");
        EXPECT_THAT(ran.output, HasSubstr(sentence));
        EXPECT_EQ(ran.exitCode, 9);
    }
}

TEST(Doctor, A_weight_in_another_unit) {
    const Ran ran = WbalanceWith("ohaus --with unit=kg --load 3", "doctor -d ohaus -t 0");
    EXPECT_THAT(ran.output, HasSubstr("the line works; the weight is not in grams; "));
    EXPECT_EQ(ran.exitCode, 10);
}

TEST(Doctor, A_port_that_is_not_there) {
    const Ran ran = Wbalance("doctor -d mettler-toledo -p 4711 --usb");
    EXPECT_THAT(ran.output, HasSubstr("diagnosis      /dev/ttyUSB4711: there is no such port;"));
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Doctor, A_pulled_adapter) {
    const Ran ran =
        WbalanceWith("mettler-toledo --usb --fault unplug", "doctor -d mettler-toledo -p 0 --usb");
    EXPECT_THAT(ran.output, HasSubstr("diagnosis      /dev/ttyUSB0: there is no such port;"));
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
        "  The balance does not say that it is a PR, XS or SB32001. If it is one, its own driver "
        "can more:\n"
        "  --driver mettler-pr2003, mettler-xs or mettler-sb32001.\n");
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
        const Ran ran = WbalanceWith(std::string(name) + " --load 3", "detect");
        EXPECT_THAT(ran.output, HasSubstr("--driver mettler-toledo --port 0\n"));
        EXPECT_THAT(ran.output, HasSubstr(name));
    }
}

TEST(Detect, Changes_nothing_on_the_balance) {
    const TemporaryFile log;
    WbalanceWith("mettler-toledo --load 3 --log " + log.Path(), "detect");
    EXPECT_THAT(log.Text(), HasSubstr("> \"SI\\r\\n\""));
    for (const char* command : {"\"@", "\"Z", "\"T", "\"TA", "\"B"})
        EXPECT_THAT(log.Text(), testing::Not(HasSubstr(std::string("> ") + command))) << command;
}

TEST(Detect, Says_that_nothing_comes_back) {
    const Ran ran = WbalanceWith("mettler-toledo --fault silent", "detect");
    EXPECT_THAT(ran.errors,
                HasSubstr("wbalance: /dev/ttyS0: nothing comes back: switch the balance on, "));
    EXPECT_EQ(ran.exitCode, 4);
}

}  // namespace
