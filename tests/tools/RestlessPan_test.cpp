// A pan that never comes to rest is not a balance that has gone, and not one that sends nothing.

#include <gmock/gmock.h>

#include <algorithm>

#include "RunProgram.h"
#include "drivers/DriverTable.h"

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

namespace {

/// An instrument on whose pan nothing rests, from its first second on.
std::string Restless(const std::string& driver) {
    return driver + " --load 10 --with noise=3 --fault busy";
}

constexpr char kMoves[] = "(the balance answers other commands, so the pan moves or it is busy)";

class RestlessPan : public testing::TestWithParam<std::string> {};

TEST_P(RestlessPan, Is_no_silence_for_weigh) {
    const Ran ran =
        WbalanceWith(Restless(GetParam()), "weigh -t 1 -d " + GetParam() + " --mode stable");
    EXPECT_THAT(ran.errors, Not(HasSubstr("no answer")));
    EXPECT_EQ(ran.output, "");
    EXPECT_EQ(ran.exitCode, 8) << ran.errors;
}

TEST_P(RestlessPan, Is_no_loss_for_monitor) {
    const Ran ran = WbalanceWith(Restless(GetParam()),
                                 "monitor " + GetParam() + "@0 -t 1 -i 0 -n 2 --mode stable --csv");
    EXPECT_THAT(ran.output, Not(HasSubstr(",lost,")));
    EXPECT_THAT(ran.errors, HasSubstr("lost 0 times"));
}

TEST_P(RestlessPan, Is_no_silence_for_doctor) {
    const Ran ran = WbalanceWith(Restless(GetParam()), "doctor -t 1 -d " + GetParam());
    EXPECT_THAT(ran.output, Not(HasSubstr("nothing comes back")));
    EXPECT_THAT(ran.exitCode, AnyOf(0, 8)) << ran.output;
}

TEST_P(RestlessPan, Is_no_silence_for_tare) {
    if (!tool::FindDriver(GetParam()).Has(tool::Operation::Tare)) return;
    const Ran ran = WbalanceWith(Restless(GetParam()), "tare -t 1 -d " + GetParam());
    EXPECT_THAT(ran.errors, Not(HasSubstr("no answer")));
    EXPECT_THAT(ran.exitCode, AnyOf(0, 8)) << ran.errors;
}

std::vector<std::string> DriverNames() {
    std::vector<std::string> names;
    for (const auto& driver : tool::Drivers())
        names.push_back(driver.name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(EveryDriver, RestlessPan, testing::ValuesIn(DriverNames()),
                         [](const auto& one) {
                             std::string name = one.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(RestlessPan, Of_a_Mettler_Toledo_is_said_to_move) {
    const Ran ran =
        WbalanceWith("mettler-toledo --fault busy", "weigh -d mettler-toledo -m stable");
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, HasSubstr(kMoves));
    EXPECT_THAT(ran.errors, HasSubstr("it sent \"S I\\r\\n\""));
    EXPECT_EQ(ran.exitCode, 8);
}

TEST(RestlessPan, Of_a_Sartorius_is_known_by_its_model) {
    const Ran ran = WbalanceWith("sartorius --fault busy", "weigh -d sartorius");
    EXPECT_THAT(ran.errors, HasSubstr(kMoves));
    EXPECT_THAT(ran.errors, HasSubstr("it sent \"LA620S        \\r\\n\""));
    EXPECT_EQ(ran.exitCode, 8);
}

TEST(RestlessPan, Of_a_Sartorius_keeps_nobody_from_detecting_it) {
    const Ran ran = WbalanceWith("sartorius --fault busy", "detect");
    EXPECT_THAT(ran.output, HasSubstr("Sartorius, balances with SBI print lines, at 1200,7O1"));
    EXPECT_EQ(ran.exitCode, 0) << ran.errors;
}

TEST(RestlessPan, Of_an_Ohaus_is_known_by_its_moving_weight) {
    const Ran ran = WbalanceWith("ohaus --fault busy --load 10", "weigh -d ohaus -m stable");
    EXPECT_THAT(ran.errors, HasSubstr(kMoves));
    EXPECT_EQ(ran.exitCode, 8);
}

TEST(RestlessPan, A_balance_that_answers_nothing_at_all_is_silent_all_the_same) {
    for (const char* driver :
         {"mettler-toledo", "mettler-xs", "mettler-pm", "sartorius", "ohaus"}) {
        const Ran ran = WbalanceWith(std::string(driver) + " --fault silent",
                                     std::string("weigh -t 0 -d ") + driver);
        EXPECT_THAT(ran.errors, HasSubstr("no answer")) << driver;
        EXPECT_EQ(ran.exitCode, 4) << driver;
    }
}

TEST(RestlessPan, A_record_of_it_replays_as_it_was) {
    const TemporaryFile record;
    WbalanceWith("sartorius --fault busy", "weigh -d sartorius --record " + record.Path());
    const Ran ran = Wbalance("replay " + record.Path());
    EXPECT_THAT(ran.output, HasSubstr(kMoves));
    EXPECT_EQ(ran.exitCode, 8);
}

}  // namespace
