// A pan that never comes to rest is not a balance that has gone, and not one that sends nothing.

#include <gmock/gmock.h>

#include "Facts.h"
#include "RunProgram.h"

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
    const Ran ran = WbalanceWith(Restless(GetParam()), "tare -t 1 -d " + GetParam());
    EXPECT_THAT(ran.errors, Not(HasSubstr("no answer")));
    EXPECT_THAT(ran.exitCode, AnyOf(0, 8)) << ran.errors;
}

TEST_P(RestlessPan, Is_no_excuse_for_a_balance_that_answers_nothing_at_all) {
    const Ran ran = WbalanceWith(GetParam() + " --fault silent", "weigh -t 0 -d " + GetParam());
    EXPECT_THAT(ran.errors, HasSubstr("no answer"));
    EXPECT_EQ(ran.exitCode, 4);
}

INSTANTIATE_TEST_SUITE_P(EveryDriver, RestlessPan, testing::ValuesIn(facts::Names()),
                         [](const auto& one) { return facts::TestNameOf(one.param); });

struct Case {
    std::string driver;
    facts::Moving moving;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const auto& one : facts::All()) {
        for (const auto& moving : one.moving)
            cases.push_back({one.name, moving});
    }
    return cases;
}

class MovingPan : public testing::TestWithParam<Case> {
 protected:
    const std::string& driver_ = GetParam().driver;
    const std::string simulated_ = driver_ + " " + GetParam().moving.simulated;
    const std::string weigh_ = "weigh -d " + driver_ + " " + GetParam().moving.arguments;
};

TEST_P(MovingPan, Is_known_by_a_sign_of_life) {
    const Ran ran = WbalanceWith(simulated_, weigh_);
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, HasSubstr(kMoves));
    EXPECT_THAT(ran.errors, HasSubstr("it sent \"" + GetParam().moving.sent));
    EXPECT_EQ(ran.exitCode, 8);
}

TEST_P(MovingPan, Is_detected_all_the_same) {
    const Ran ran = WbalanceWith(simulated_, "detect");
    for (const auto& one : facts::All()) {
        if (one.name != driver_) continue;
        EXPECT_THAT(ran.output, HasSubstr(one.title + ", at " + one.line));
    }
    EXPECT_EQ(ran.exitCode, 0) << ran.errors;
}

TEST_P(MovingPan, Replays_as_it_was) {
    const TemporaryFile record;
    WbalanceWith(simulated_, weigh_ + " --record " + record.Path());
    const Ran ran = Wbalance("replay " + record.Path());
    EXPECT_THAT(ran.output, HasSubstr(kMoves));
    EXPECT_EQ(ran.exitCode, 8);
}

INSTANTIATE_TEST_SUITE_P(Of, MovingPan, testing::ValuesIn(Cases()),
                         [](const auto& one) { return facts::TestNameOf(one.param.driver); });

}  // namespace
