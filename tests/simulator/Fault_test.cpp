#include "simulator/Fault.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "Examples.h"
#include "simulator/Instrument.h"

using examples::kBalance;
using simulator::Fault;
using simulator::FaultEffects;
using simulator::FindInstrument;
using simulator::Instrument;
using simulator::Time;
using testing::HasSubstr;
using namespace std::chrono_literals;

namespace {

std::string Refusal(const char* text) {
    try {
        Fault::Parse(text);
        return "accepted";
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

/// A balance with 12.34 g on the pan, asked for its weight at the time `at`.
class FaultyBalance : public testing::Test {
 protected:
    void Have(const char* fault) {
        instrument_.AddFault(Fault::Parse(fault));
        instrument_.Balance().StartWithLoad(12.34);
    }
    std::string Ask(const char* command, Time at) {
        instrument_.Receive(std::string(command), at);
        return instrument_.TakeOutput();
    }
    std::string AnswersUntil(Time time) {
        instrument_.Advance(time);
        return instrument_.TakeOutput();
    }

    Instrument instrument_{FindInstrument(kBalance)};
};

}  // namespace

TEST(Fault, Reads_a_name_a_value_a_start_and_a_duration) {
    const Fault fault = Fault::Parse("unplug=/dev/ttyUSB1@5s+2s");
    EXPECT_EQ(fault.name, "unplug");
    EXPECT_EQ(fault.value, "/dev/ttyUSB1");
    EXPECT_EQ(fault.from, 5000ms);
    EXPECT_EQ(fault.until, 7000ms);
}

TEST(Fault, Takes_its_own_value_and_all_time_when_nothing_is_said) {
    const Fault fault = Fault::Parse("late");
    EXPECT_EQ(fault.value, "1500ms");
    EXPECT_EQ(fault.from, 0ms);
    EXPECT_FALSE(fault.until);
}

TEST(Fault, Says_what_is_wrong_with_a_text) {
    EXPECT_THAT(Refusal("slow"), HasSubstr("there is no such fault; there are busy, late"));
    EXPECT_THAT(Refusal("late=soon"), HasSubstr("\"soon\" is no time such as 500ms or 2s"));
    EXPECT_THAT(Refusal("silent@x"), HasSubstr("\"x\" is no time"));
    EXPECT_THAT(Refusal("truncated=a"), HasSubstr("a number of characters"));
    EXPECT_THAT(Refusal(""), HasSubstr("NAME[=VALUE][@START[+DURATION]]"));
}

namespace {

std::string TextOf(const char* file) {
    std::ifstream text(file);
    return {std::istreambuf_iterator<char>(text), {}};
}

}  // namespace

TEST(Fault, Each_does_something_when_it_is_in_force_and_nothing_before_and_after) {
    const auto areSame = [](const FaultEffects& a, const FaultEffects& b) {
        return a.isBusy == b.isBusy && a.isSilent == b.isSilent && a.hasPower == b.hasPower &&
               a.isUnplugged == b.isUnplugged && a.range == b.range && a.delay == b.delay &&
               a.rubbish == b.rubbish && a.longestAnswer == b.longestAnswer;
    };
    for (const auto& each : simulator::FaultTable()) {
        const std::vector<Fault> faults = {Fault::Parse(each.name + "@1s+1s")};
        EXPECT_TRUE(areSame(simulator::EffectsOf(faults, 999ms), {})) << each.name;
        EXPECT_FALSE(areSame(simulator::EffectsOf(faults, 1s), {})) << each.name;
        EXPECT_TRUE(areSame(simulator::EffectsOf(faults, 2s), {})) << each.name;
    }
}

TEST(Fault, Of_two_of_a_name_the_first_counts) {
    const std::vector<Fault> faults = {Fault::Parse("late=2s"), Fault::Parse("late=1s")};
    EXPECT_EQ(simulator::EffectsOf(faults, 0s).delay, 2s);
}

TEST(Fault, Each_stands_in_the_table_of_the_page) {
    std::string rows;
    for (const auto& each : simulator::FaultTable())
        rows += "| `" + each.name + (each.initial.empty() ? "" : "=" + each.initial) + "` | " +
                each.sentence + " |\n";
    EXPECT_THAT(TextOf(WBALANCE_SIMULATOR_PAGE),
                HasSubstr("\n\n| Fault | What happens |\n|---|---|\n" + rows + "\n"));
}

TEST_F(FaultyBalance, Silent_answers_nothing_while_it_lasts) {
    Have("silent@1s+1s");
    EXPECT_EQ(Ask("SI\r\n", 999ms), "S S      12.34 g\r\n");
    EXPECT_EQ(Ask("SI\r\n", 1000ms), "");
    EXPECT_EQ(Ask("SI\r\n", 2000ms), "S S      12.34 g\r\n");
}

TEST_F(FaultyBalance, Late_answers_after_its_time) {
    Have("late=1500ms");
    EXPECT_EQ(Ask("SI\r\n", 1000ms), "");
    EXPECT_EQ(instrument_.NextEvent(), 2500ms);
    EXPECT_EQ(AnswersUntil(2499ms), "");
    EXPECT_EQ(AnswersUntil(2500ms), "S S      12.34 g\r\n");
}

TEST_F(FaultyBalance, Truncated_sends_only_the_first_characters) {
    Have("truncated=10");
    EXPECT_EQ(Ask("SI\r\n", 0ms), "S S      1");
}

TEST_F(FaultyBalance, Noise_comes_ahead_of_the_answer_and_is_the_same_in_every_run) {
    Have("noise=3");
    const std::string answer = Ask("SI\r\n", 0ms);
    ASSERT_EQ(answer.size(), 21u);
    EXPECT_EQ(answer.substr(3), "S S      12.34 g\r\n");
    Instrument again(FindInstrument(kBalance));
    again.AddFault(Fault::Parse("noise=3"));
    again.Balance().StartWithLoad(12.34);
    again.Receive("SI\r\n", 0ms);
    EXPECT_EQ(again.TakeOutput(), answer);
}

TEST_F(FaultyBalance, Busy_answers_I_after_the_stability_time_out) {
    Have("busy");
    EXPECT_EQ(Ask("SI\r\n", 0ms), "S I\r\n");
    EXPECT_EQ(Ask("S\r\n", 0ms), "");
    EXPECT_EQ(AnswersUntil(9999ms), "");
    EXPECT_EQ(AnswersUntil(10000ms), "S I\r\n");
}

TEST_F(FaultyBalance, A_power_cut_forgets_commands_waits_and_tare) {
    Have("power-cut@1s+1s");
    EXPECT_EQ(Ask("TA 2 g\r\n", 0ms), "TA A       2.00 g\r\n");
    instrument_.Balance().ScheduleLoad(0ms, 20);
    EXPECT_EQ(Ask("S\r\n", 0ms), "");
    EXPECT_EQ(Ask("SI\r\nSI", 1500ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(Ask("S\r\n", 5000ms), "S S      20.00 g\r\n");
}

TEST_F(FaultyBalance, A_power_cut_without_end_leaves_it_dead) {
    Have("power-cut@1s");
    EXPECT_EQ(Ask("SI\r\n", 1000ms), "");
    EXPECT_EQ(AnswersUntil(60s), "");
}

TEST_F(FaultyBalance, Overload_and_underload_take_turns) {
    Have("overload@0s+1s");
    Have("underload@1s");
    EXPECT_EQ(Ask("S\r\n", 0ms), "S +\r\n");
    EXPECT_EQ(Ask("T\r\n", 500ms), "T +\r\n");
    EXPECT_EQ(Ask("SI\r\n", 1000ms), "S -\r\n");
    EXPECT_EQ(Ask("Z\r\n", 1000ms), "Z -\r\n");
}
