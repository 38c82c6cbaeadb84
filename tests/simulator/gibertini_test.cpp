#include "simulator/instruments/gibertini.h"

#include <gtest/gtest.h>

#include "simulator/Instrument.h"

using simulator::Fault;
using simulator::Instrument;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// A Gibertini balance in virtual time: what it is asked, what it answers, to the byte.
class Gibertini : public testing::Test {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        instrument_ = std::make_unique<Instrument>(simulator::gibertini(), switches);
        instrument_->balance().startWithLoad(load);
    }
    std::string ask(const std::string& bytes, Time at = 0ms) {
        instrument_->receive(bytes, at);
        return instrument_->takeOutput();
    }
    std::string answersUntil(Time time) {
        instrument_->advance(time);
        return instrument_->takeOutput();
    }

    std::unique_ptr<Instrument> instrument_;
};

}  // namespace

TEST_F(Gibertini, B_is_answered_with_a_record_of_19_characters) {
    have(123.45);
    EXPECT_EQ(ask("B\r"), "    123.45 g   DS\r\n");
}

TEST_F(Gibertini, A_minus_sign_touches_the_digits) {
    have(-12.5);
    EXPECT_EQ(ask("B\r"), "    -12.50 g   DS\r\n");
}

TEST_F(Gibertini, A_moving_pan_is_I) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("B\r", 100ms), "     24.33 g   DI\r\n");
}

TEST_F(Gibertini, Line_feeds_are_ignored) {
    have(1);
    EXPECT_EQ(ask("\nB\n\r\n"), "      1.00 g   DS\r\n");
}

TEST_F(Gibertini, Unknown_commands_are_not_answered) {
    have(1);
    EXPECT_EQ(ask("b\rX\r\rB 1\r"), "");
    EXPECT_EQ(ask("B\r"), "      1.00 g   DS\r\n");
}

TEST_F(Gibertini, T_is_answered_with_the_weight_that_is_tared) {
    have(12.5);
    EXPECT_EQ(ask("T\r"), "     12.50 g   TS\r\n");
    EXPECT_EQ(ask("B\r"), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, T_waits_for_the_pan_and_holds_nothing_back) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("T\rB\r", 100ms), "     24.33 g   TI\r\n     24.33 g   DI\r\n");
    EXPECT_EQ(answersUntil(5s), "");
    EXPECT_EQ(ask("B\r", 5s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, A_second_record_says_that_the_tare_is_done_where_that_is_switched_on) {
    have(0, {"tare-done"});
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("T\r", 100ms), "     24.33 g   TI\r\n");
    EXPECT_EQ(answersUntil(5s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, C_is_answered_with_the_flag_of_a_calibration) {
    have(1);
    EXPECT_EQ(ask("C\r"), "      1.00 g   CS\r\n");
}

TEST_F(Gibertini, I_sends_records_until_F) {
    have(1);
    EXPECT_EQ(ask("I\r"), "      1.00 g   DS\r\n");
    EXPECT_EQ(answersUntil(400ms), "      1.00 g   DS\r\n      1.00 g   DS\r\n");
    EXPECT_EQ(ask("F\r", 500ms), "      1.00 g   DS\r\n");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Gibertini, Records_come_from_the_switching_on_where_that_is_switched_on) {
    have(1, {"continuous", "interval=1s"});
    instrument_->addFault(Fault::parse("power-cut@2500ms+1s"));
    answersUntil(0ms);  // the record of the switching on
    EXPECT_EQ(answersUntil(2s), "      1.00 g   DS\r\n      1.00 g   DS\r\n");
    EXPECT_EQ(ask("B\r", 2100ms), "      1.00 g   DS\r\n");
    EXPECT_EQ(answersUntil(5s), "      0.00 g   IS\r\n      0.00 g   IS\r\n");
    EXPECT_EQ(ask("F\r", 5100ms), "      0.00 g   IS\r\n");
    EXPECT_EQ(answersUntil(60s), "");
}

TEST_F(Gibertini, Records_may_say_that_something_else_is_under_way) {
    have(5, {"flag=Z"});
    EXPECT_EQ(ask("B\rT\r"), "      5.00 g   ZS\r\n      5.00 g   TS\r\n");
    have(5, {"flag=C"});
    EXPECT_EQ(ask("B\r"), "      5.00 g   CS\r\n");
}

TEST_F(Gibertini, Out_of_range_the_flags_are_O_or_U_and_E) {
    have(700);
    EXPECT_EQ(ask("B\rT\r"), "    700.00 g   OE\r\n    700.00 g   OE\r\n");
    have(-70);
    EXPECT_EQ(ask("B\r"), "    -70.00 g   UE\r\n");
}

TEST_F(Gibertini, The_initial_test_is_flagged_I_after_a_power_cut) {
    have(1);
    instrument_->addFault(Fault::parse("power-cut@1s+1s"));
    EXPECT_EQ(ask("B\r", 3s), "      0.00 g   IS\r\n");
    EXPECT_EQ(ask("B\r", 4s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, The_EURO_protocol_has_the_measure_alone) {
    have(123.45, {"protocol=euro"});
    EXPECT_EQ(ask("B\r"), "   123.45\r\n");
}

TEST_F(Gibertini, The_PRINTER_protocol_prints_at_rest_when_the_key_is_pressed) {
    have(0, {"protocol=printer", "print-key=5s"});
    EXPECT_EQ(ask("B\rT\r"), "");
    EXPECT_EQ(answersUntil(4900ms), "");
    instrument_->balance().setLoad(50);
    EXPECT_EQ(answersUntil(5s), "");
    EXPECT_EQ(answersUntil(9s), "     50.00 g  \r\n");
}
