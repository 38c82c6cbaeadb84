// Keys that somebody presses and switches that somebody sets while an instrument runs.

#include <gmock/gmock.h>

#include <stdexcept>

#include "Examples.h"
#include "InstrumentTest.h"

using examples::kBalance;
using simulator::Key;
using testing::HasSubstr;
using namespace std::chrono_literals;

namespace {

using Keys = InstrumentTest;

}  // namespace

TEST_F(Keys, Print_sends_what_each_instrument_shows) {
    for (const auto& entry : simulator::Catalog()) {
        Have(entry.name, 12.5);
        EXPECT_THAT(Press(Key::Print), HasSubstr("12.5")) << entry.name;
    }
}

TEST_F(Keys, Tare_and_zero_are_carried_out_at_rest_and_say_nothing) {
    for (const auto& entry : simulator::Catalog()) {
        Have(entry.name, 1);
        PutOn(4);
        EXPECT_EQ(Press(Key::Tare), "") << entry.name;
        EXPECT_EQ(instrument_->Balance().TareWeight(), 0) << entry.name;
        EXPECT_EQ(AnswersUntil(9s), "") << entry.name;
        EXPECT_EQ(instrument_->Balance().TareWeight(), 4) << entry.name;
        EXPECT_EQ(Press(Key::Zero), "") << entry.name;
        EXPECT_EQ(instrument_->Balance().TareWeight(), 0) << entry.name;
    }
}

TEST_F(Keys, Without_power_no_key_does_anything) {
    Have(kBalance, 5);
    AddFault("power-cut");
    AnswersUntil(1s);
    EXPECT_EQ(Press(Key::Print), "");
}

TEST_F(Keys, A_switch_that_is_refused_changes_nothing) {
    Have(kBalance, 12.5);
    EXPECT_THROW(instrument_->Choose("speed=2"), std::invalid_argument);
    EXPECT_THROW(instrument_->Choose("readability=0"), std::invalid_argument);
    EXPECT_THROW(instrument_->CheckSwitch("noise=loud"), std::invalid_argument);
    EXPECT_EQ(Ask("S\r\n"), "S S      12.50 g\r\n");
}

TEST_F(Keys, Drift_that_begins_later_creeps_from_there) {
    Have(kBalance, 10);
    AnswersUntil(1000s);
    instrument_->Choose("drift=3600");
    AnswersUntil(1001s);
    EXPECT_EQ(Ask("SI\r\n", 1001s).substr(3), "      11.00 g\r\n");
    instrument_->Choose("drift=0");
    AnswersUntil(1100s);
    EXPECT_EQ(Ask("SI\r\n", 1100s), "S S      11.00 g\r\n");
}
