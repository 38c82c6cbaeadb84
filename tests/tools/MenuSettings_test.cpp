// What doctor says of the settings in the menu of the balance, where what comes shows them.

#include <gmock/gmock.h>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

/// An instrument that was sent bytes, the driver with its options, and the end of what doctor says.
struct Case {
    const char* name;
    std::string instrument;
    const char* stty;  ///< line settings at which the bytes are sent; empty: none are
    const char* bytes;
    std::string driver;
    std::string said;
    int exitCode;
};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

Ran DoctorAt(const Case& one) {
    std::string before;
    if (*one.stty != '\0')
        before = std::string("stty -F /dev/ttyS0 ") + one.stty + "; printf \"" + one.bytes +
                 "\" >/dev/ttyS0; ";
    return RunShell(std::string(WBALANCE_SIM) + " " + one.instrument + " -- sh -c '" + before +
                    WBALANCE " doctor -d " + one.driver + "'");
}

class DoctorOnTheMenu : public testing::TestWithParam<Case> {};

TEST_P(DoctorOnTheMenu, Ends_with_the_setting) {
    const Ran ran = DoctorAt(GetParam());
    EXPECT_THAT(ran.output, EndsWith(GetParam().said));
    EXPECT_EQ(ran.errors, "");
    EXPECT_EQ(ran.exitCode, GetParam().exitCode);
}

// Of an instrument whose weight comes and which also sends unasked.
std::string Unasked(const std::string& weight, const std::string& setting) {
    return "\nweight         " + weight +
           "\ndiagnosis      /dev/ttyS0: the balance sends without being asked, so that a host may "
           "take an old weight for the answer; in its menu, set " +
           setting + "\n";
}

const std::vector<Case> kCases = {
    {"a_Sartorius_that_prints_automatically", "sartorius --load 12.34 --with auto-print=on", "", "",
     "sartorius",
     Unasked("12.34 g, stable", "automatic print to off (print: manual, without stability)"), 5},
    {"a_Sartorius_that_prints_automatically_in_lines_of_22",
     "sartorius --load 12.34 --with auto-print=on --with line=22", "", "", "sartorius",
     Unasked("12.34 g, stable", "automatic print to off (print: manual, without stability)"), 5},
    {"a_Sartorius_that_stops_printing_at_the_request",
     "sartorius --load 12.34 --with auto-print=on --with series=cp", "", "", "sartorius",
     Unasked("12.34 g, stable", "automatic print to off (print: manual, without stability)"), 5},
    {"a_Sartorius_that_prints_while_its_pan_moves",
     "sartorius --load 12.34 --with auto-print=on --fault busy", "", "", "sartorius",
     Unasked("12.34 , dynamic", "automatic print to off (print: manual, without stability)"), 5},
    {"a_Sartorius_that_prints_automatically_on_a_slow_line",
     "sartorius --load 12.34 --with auto-print=on --pace", "", "", "sartorius",
     "/dev/ttyS0: the balance sends without being asked, so that a host may take an old weight for "
     "the answer; in its menu, set automatic print to off (print: manual, without stability)\n",
     5},
    {"a_Sartorius_that_prints_after_stability_and_whose_pan_moves",
     "sartorius --load 12.34 --fault busy", "", "", "sartorius",
     "the line works; no weight yet; wait until the pan is at rest and the balance has finished "
     "(the balance answers other commands, so the pan moves or it is busy); or, in its menu, set "
     "print to manual, without stability\n",
     8},
    {"a_Sartorius_that_is_silent", "sartorius --fault silent", "", "", "sartorius",
     "does the balance send at 1200,7O1? `wbalance detect` tries other settings; or, in its menu, "
     "set the handshake to none\n",
     4},
    {"an_Ohaus_in_continuous_print", "ohaus --load 12.34 --with series=explorer",
     "2400 cs7 -parenb -cstopb", "CP\\r\\n", "ohaus",
     Unasked("12.34 g, stable", "automatic print to off"), 5},
    {"an_Ohaus_that_prints_stable_weights_only", "ohaus --fault busy --with stable-only=on", "", "",
     "ohaus",
     "does the balance send at 2400,7N1? `wbalance detect` tries other settings; or, in its menu, "
     "set stable only to off\n",
     4},
    {"a_Radwag_in_continuous_transmission", "radwag --load 12.34",
     "9600 cs7 parenb -parodd -cstopb", "C1\\r\\n", "radwag",
     Unasked("12.34 g, stable", "continuous transmission to off"), 5},
    {"a_Kern_in_continuous_output", "kern --load 12.34", "1200 cs8 -parenb cstopb", "O1\\r\\n",
     "kern",
     Unasked("12.34 G, stable",
             "the interface to commands from the host (remote, no automatic print)"),
     5},
    {"a_Mettler_Toledo_that_repeats_its_weight", kBalance + " --load 12.34",
     "2400 cs7 parenb -parodd -cstopb", "SIR\\r\\n", kBalance,
     Unasked("12.34 g, stable", "the interface mode to Host"), 5},
    {"another_makers_instrument_that_prints_automatically",
     "sartorius --load 12.34 --line 9600,7E1 --with auto-print=on --with line=22", "", "",
     "radwag -t 0", "the answer is not one for the driver radwag; try --driver sartorius\n", 5},
    {"a_Sartorius_that_prints_on_request", "sartorius --load 12.34", "", "", "sartorius",
     "\nweight         12.34 g, stable\n"
     "diagnosis      /dev/ttyS0: everything works; `wbalance weigh --driver sartorius --port "
     "/dev/ttyS0` reads the weight\n",
     0},
    {"a_balance_that_prints_on_request_on_a_slow_line",
     "mettler-xs --load 3 --line 300,7E1 --pace=ftdi:255", "", "", "mettler-xs -l 300,7E1",
     "everything works; `wbalance weigh --driver mettler-xs --port /dev/ttyS0 --line 300,7E1` "
     "reads the weight\n",
     0},
};

INSTANTIATE_TEST_SUITE_P(Of, DoctorOnTheMenu, testing::ValuesIn(kCases), NameOf);

// Doctor listens behind the line "line".
TEST(DoctorOnTheMenuAlso, Blames_nobody_who_presses_PRINT_once) {
    const Ran ran =
        RunShell(WBALANCE_SIM " sartorius --load 12.34 -- sh -c '" WBALANCE
                              " doctor -d sartorius | while read -r word text; do echo $word "
                              "$text; if test $word = line; then " WBALANCE_SIM
                              " control press print; fi; done'");
    EXPECT_THAT(ran.output, HasSubstr("\nweight 12.34 g, stable\n"));
    EXPECT_THAT(ran.output, HasSubstr("diagnosis /dev/ttyS0: everything works; "));
    EXPECT_THAT(ran.output, Not(HasSubstr("without being asked")));
}

}  // namespace
