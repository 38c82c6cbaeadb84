#include "InstrumentTest.h"

using simulator::Fault;
using simulator::Instrument;
using simulator::Key;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

class Gibertini : public InstrumentTest {
 protected:
    Gibertini() : InstrumentTest("gibertini") {}
};

}  // namespace

TEST_F(Gibertini, B_is_answered_with_a_record_of_19_characters) {
    Have(123.45);
    EXPECT_EQ(Ask("B\r"), "    123.45 g   DS\r\n");
}

TEST_F(Gibertini, A_minus_sign_touches_the_digits) {
    Have(-12.5);
    EXPECT_EQ(Ask("B\r"), "    -12.50 g   DS\r\n");
}

TEST_F(Gibertini, A_moving_pan_is_I) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("B\r", 100ms), "     24.33 g   DI\r\n");
}

TEST_F(Gibertini, Line_feeds_are_ignored) {
    Have(1);
    EXPECT_EQ(Ask("\nB\n\r\n"), "      1.00 g   DS\r\n");
}

TEST_F(Gibertini, Unknown_commands_are_not_answered) {
    Have(1);
    EXPECT_EQ(Ask("b\rX\r\rB 1\r"), "");
    EXPECT_EQ(Ask("B\r"), "      1.00 g   DS\r\n");
}

TEST_F(Gibertini, T_is_answered_with_the_weight_that_is_tared) {
    Have(12.5);
    EXPECT_EQ(Ask("T\r"), "     12.50 g   TS\r\n");
    EXPECT_EQ(Ask("B\r"), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, T_waits_for_the_pan_and_holds_nothing_back) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("T\rB\r", 100ms), "     24.33 g   TI\r\n     24.33 g   DI\r\n");
    EXPECT_EQ(AnswersUntil(5s), "");
    EXPECT_EQ(Ask("B\r", 5s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, A_second_record_says_that_the_tare_is_done_where_that_is_switched_on) {
    Have(0, {"tare-done"});
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("T\r", 100ms), "     24.33 g   TI\r\n");
    EXPECT_EQ(AnswersUntil(5s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, C_is_answered_with_the_flag_of_a_calibration) {
    Have(1);
    EXPECT_EQ(Ask("C\r"), "      1.00 g   CS\r\n");
}

TEST_F(Gibertini, I_sends_records_until_F) {
    Have(1);
    EXPECT_EQ(Ask("I\r"), "      1.00 g   DS\r\n");
    EXPECT_EQ(AnswersUntil(400ms), "      1.00 g   DS\r\n      1.00 g   DS\r\n");
    EXPECT_EQ(Ask("F\r", 500ms), "      1.00 g   DS\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Gibertini, Records_come_from_the_switching_on_where_that_is_switched_on) {
    Have(1, {"continuous", "interval=1s"});
    instrument_->AddFault(Fault::Parse("power-cut@2500ms+1s"));
    AnswersUntil(0ms);  // the record of the switching on
    EXPECT_EQ(AnswersUntil(2s), "      1.00 g   DS\r\n      1.00 g   DS\r\n");
    EXPECT_EQ(Ask("B\r", 2100ms), "      1.00 g   DS\r\n");
    EXPECT_EQ(AnswersUntil(5s), "      0.00 g   IS\r\n      0.00 g   IS\r\n");
    EXPECT_EQ(Ask("F\r", 5100ms), "      0.00 g   IS\r\n");
    EXPECT_EQ(AnswersUntil(60s), "");
}

TEST_F(Gibertini, Records_may_say_that_something_else_is_under_way) {
    Have(5, {"flag=Z"});
    EXPECT_EQ(Ask("B\rT\r"), "      5.00 g   ZS\r\n      5.00 g   TS\r\n");
    Have(5, {"flag=C"});
    EXPECT_EQ(Ask("B\r"), "      5.00 g   CS\r\n");
}

TEST_F(Gibertini, Out_of_range_the_flags_are_O_or_U_and_E) {
    Have(700);
    EXPECT_EQ(Ask("B\rT\r"), "    700.00 g   OE\r\n    700.00 g   OE\r\n");
    Have(-70);
    EXPECT_EQ(Ask("B\r"), "    -70.00 g   UE\r\n");
}

TEST_F(Gibertini, The_initial_test_is_flagged_I_after_a_power_cut) {
    Have(1);
    instrument_->AddFault(Fault::Parse("power-cut@1s+1s"));
    EXPECT_EQ(Ask("B\r", 3s), "      0.00 g   IS\r\n");
    EXPECT_EQ(Ask("B\r", 4s), "      0.00 g   DS\r\n");
}

TEST_F(Gibertini, The_EURO_protocol_has_the_measure_alone) {
    Have(123.45, {"protocol=euro"});
    EXPECT_EQ(Ask("B\r"), "   123.45\r\n");
}

TEST_F(Gibertini, The_PRINTER_protocol_prints_at_rest_when_the_key_is_pressed) {
    Have(0, {"protocol=printer", "print-key=5s"});
    EXPECT_EQ(Ask("B\rT\r"), "");
    EXPECT_EQ(AnswersUntil(4900ms), "");
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(AnswersUntil(5s), "");
    EXPECT_EQ(AnswersUntil(9s), "     50.00 g  \r\n");
}

TEST_F(Gibertini, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "     12.50 g   DS\r\n");
}

TEST_F(Gibertini, The_print_key_sends_the_form_of_its_protocol) {
    Have(12.5, {"protocol=printer"});
    EXPECT_EQ(Press(Key::Print), "     12.50 g  \r\n");
    Have(12.5, {"protocol=euro"});
    EXPECT_EQ(Press(Key::Print), "    12.50\r\n");
}
