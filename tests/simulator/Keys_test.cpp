// Keys that somebody presses and switches that somebody sets while an instrument runs.

#include <gmock/gmock.h>

#include <map>
#include <stdexcept>

#include "InstrumentTest.h"

using simulator::Key;
using namespace std::chrono_literals;

namespace {

class Keys : public InstrumentTest {
 protected:
    std::string Press(Key key) {
        instrument_->Press(key);
        return instrument_->TakeOutput();
    }
};

}  // namespace

TEST_F(Keys, Print_sends_the_line_of_each_instrument) {
    const std::map<std::string, std::string> lines = {
        {"denver-xl1800", "1+    12.50 g\r\n"},
        {"gibertini", "     12.50 g   DS\r\n"},
        {"kern", "+  12.50 G S\r\n"},
        {"mettler-pm", "S       12.50 g\r\n"},
        {"mettler-pr2003", "S S     12.500 g\r\n"},
        {"mettler-sb32001", "S S       12.5 g\r\n"},
        {"mettler-toledo", "S S      12.50 g\r\n"},
        {"mettler-xs", "S S    12.5000 g\r\n"},
        {"ohaus", "       12.50 g      \r\n"},
        {"radwag", "       12.50 g  \r\n"},
        {"sartorius", "+    12.50 g  \r\n"},
        {"scale-house", "PROJ 12\r\n 12.50 g\r\n 0.00 g T\r\n 12.50 g N\r\n"},
        {"setra-el2000s", "1+    12.50 g\r\n"}};
    for (const auto& entry : simulator::Catalog()) {
        Have(entry.name, 12.5);
        ASSERT_EQ(lines.count(entry.name), 1u) << entry.name;
        EXPECT_EQ(Press(Key::Print), lines.at(entry.name)) << entry.name;
    }
}

TEST_F(Keys, Print_of_a_radwag_out_of_range_is_marked_and_reads_zero) {
    Have("radwag", 5000);
    EXPECT_EQ(Press(Key::Print), "^       0.00 g  \r\n");
}

TEST_F(Keys, Print_of_a_gibertini_has_the_form_of_its_protocol) {
    Have("gibertini", 12.5, {"protocol=printer"});
    EXPECT_EQ(Press(Key::Print), "     12.50 g  \r\n");
    Have("gibertini", 12.5, {"protocol=euro"});
    EXPECT_EQ(Press(Key::Print), "    12.50\r\n");
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
    Have("mettler-toledo", 5);
    AddFault("power-cut");
    AnswersUntil(1s);
    EXPECT_EQ(Press(Key::Print), "");
}

TEST_F(Keys, A_switch_that_is_set_while_it_runs_is_in_force_at_once) {
    Have("mettler-pm", 12.5);
    instrument_->Choose("protocol=mt-sics");
    EXPECT_EQ(Ask("S\r\n"), "S S      12.50 g\r\n");
    instrument_->Choose("unit=kg");
    EXPECT_EQ(Ask("S\r\n"), "S S    0.01250 kg\r\n");
}

TEST_F(Keys, A_switch_of_the_balance_as_such_ends_nothing) {
    Have("mettler-toledo", 12.5, {"repeat-interval=200ms"});
    EXPECT_EQ(Ask("SIR\r\n"), "S S      12.50 g\r\n");
    instrument_->Choose("unit=kg");
    EXPECT_EQ(AnswersUntil(250ms), "S S    0.01250 kg\r\n");
    instrument_->Choose("serial-number=7777777");
    EXPECT_EQ(AnswersUntil(1s), "");
    EXPECT_EQ(Ask("I4\r\n", 1s), "I4 A \"7777777\"\r\n");
}

TEST_F(Keys, A_switch_that_is_refused_changes_nothing) {
    Have("mettler-toledo", 12.5);
    EXPECT_THROW(instrument_->Choose("speed=2"), std::invalid_argument);
    EXPECT_THROW(instrument_->Choose("readability=0"), std::invalid_argument);
    EXPECT_THROW(instrument_->CheckSwitch("noise=loud"), std::invalid_argument);
    EXPECT_EQ(Ask("S\r\n"), "S S      12.50 g\r\n");
}

TEST_F(Keys, Drift_that_begins_later_creeps_from_there) {
    Have("mettler-toledo", 10);
    AnswersUntil(1000s);
    instrument_->Choose("drift=3600");
    AnswersUntil(1001s);
    EXPECT_EQ(Ask("SI\r\n", 1001s).substr(3), "      11.00 g\r\n");
    instrument_->Choose("drift=0");
    AnswersUntil(1100s);
    EXPECT_EQ(Ask("SI\r\n", 1100s), "S S      11.00 g\r\n");
}
