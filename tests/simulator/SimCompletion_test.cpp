// The completion of wbalance-sim as bash uses it.

#include <gmock/gmock.h>

#include <sstream>
#include <vector>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kOtherBalance;
using examples::kThirdBalance;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

namespace {

/// What is offered for the last of the words.
std::vector<std::string> Offered(const std::string& words) {
    const Ran ran =
        RunShell("PATH=$(dirname " WBALANCE_SIM "):$PATH bash -c '. " WBALANCE_COMPLETION
                 "; COMP_WORDS=(wbalance-sim " +
                 words +
                 "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _wbalance_sim; "
                 "printf \"%s\\n\" \"${COMPREPLY[@]}\"'");
    EXPECT_EQ(ran.errors, "");
    std::vector<std::string> words_;
    std::istringstream lines(ran.output);
    for (std::string line; std::getline(lines, line);)
        words_.push_back(line);
    return words_;
}

}  // namespace

TEST(SimCompletion, Offers_instruments_first_and_behind_a_comma) {
    EXPECT_THAT(Offered(kThirdBalance.substr(0, 2)), ElementsAre(kThirdBalance));
    EXPECT_THAT(Offered(kThirdBalance + " , " + kOtherBalance.substr(0, 3)),
                ElementsAre(kOtherBalance));
    EXPECT_THAT(Offered("\"\""), IsSupersetOf({kBalance, std::string("replay"),
                                               std::string("control"), std::string("--list")}));
}

TEST(SimCompletion, Offers_the_switches_of_the_instrument_that_is_meant) {
    EXPECT_THAT(Offered(kThirdBalance + " --with \"\""),
                AllOf(IsSupersetOf({"acknowledgement=", "noise="}), Not(Contains("protocol="))));
}

TEST(SimCompletion, Offers_faults_and_options) {
    EXPECT_THAT(Offered(kThirdBalance + " --fault un"), ElementsAre("underload", "unplug"));
    EXPECT_THAT(Offered(kThirdBalance + " --p"), ElementsAre("--port", "--pace", "--pty"));
    EXPECT_THAT(Offered(kThirdBalance + " --pace = f"), ElementsAre("ftdi"));
    EXPECT_THAT(Offered(kThirdBalance + " --pace ="),
                ElementsAre("character", "16550", "ftdi", "pl2303", "ch341"));
    EXPECT_THAT(Offered("replay a.record --fas"), ElementsAre("--fast"));
}

TEST(SimCompletion, Offers_what_control_can_do) {
    EXPECT_THAT(Offered("control pr"), ElementsAre("press"));
    EXPECT_THAT(Offered("control press \"\""), ElementsAre("print", "tare", "zero"));
    EXPECT_THAT(Offered("control --port ttyS0 un"), ElementsAre("unplug"));
}

TEST(SimCompletion, Offers_programs_behind_two_dashes) {
    EXPECT_THAT(Offered(kThirdBalance + " -- wbalance-s"), Contains("wbalance-sim"));
}
