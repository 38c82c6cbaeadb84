#include "simulator/instruments/sartorius.h"

#include "InstrumentTest.h"

using namespace std::chrono_literals;

namespace {

const std::string print = "\x1bP\r\n";
const std::string tare = "\x1bT\r\n";

class Sartorius : public InstrumentTest {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        InstrumentTest::have("sartorius", load, switches);
    }
};

TEST_F(Sartorius, Prints_a_line_of_16_characters) {
    have(123.56);
    EXPECT_EQ(ask(print), "+   123.56 g  \r\n");
    have(-12.34);
    EXPECT_EQ(ask(print), "-    12.34 g  \r\n");
    have(0);
    EXPECT_EQ(ask(print), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Prints_a_line_of_22_characters_with_an_identifier) {
    have(123.56, {"line=22"});
    EXPECT_EQ(ask(print), "N     +   123.56 g  \r\n");
}

TEST_F(Sartorius, A_command_needs_no_line_end) {
    have(1);
    EXPECT_EQ(ask("\x1bP"), "+     1.00 g  \r\n");
    EXPECT_EQ(ask("\x1bP\x1bP"), "+     1.00 g  \r\n+     1.00 g  \r\n");
}

TEST_F(Sartorius, A_command_may_come_in_pieces) {
    have(0);
    EXPECT_EQ(ask("\x1b"), "");
    EXPECT_EQ(ask("t5"), "");
    EXPECT_EQ(ask(".00"), "");
    EXPECT_EQ(ask("_\r\n\x1bkF4_\r"), "");
    EXPECT_EQ(ask("\n\x1bP"), "-     5.00 g  \r\n");
}

TEST_F(Sartorius, Unknown_commands_and_stray_characters_get_no_answer) {
    have(1);
    EXPECT_EQ(ask("P\r\nS\r\n\x1bQ\r\n\x1bx1_\r\n"), "");
    EXPECT_EQ(ask(print), "+     1.00 g  \r\n");
}

TEST_F(Sartorius, As_delivered_prints_only_at_rest) {
    have(0);
    putOn(50);
    EXPECT_EQ(ask(print, 100ms), "");
    EXPECT_EQ(answersUntil(5000ms), "+    50.00 g  \r\n");
}

TEST_F(Sartorius, Prints_a_moving_pan_without_its_unit_when_set_to_print_at_once) {
    have(0, {"print=at-once"});
    putOn(50);
    EXPECT_EQ(ask(print, 100ms), "+    24.33    \r\n");
}

TEST_F(Sartorius, Prints_nothing_for_a_moving_pan_when_set_so) {
    have(0, {"print=stable-or-nothing"});
    putOn(50);
    EXPECT_EQ(ask(print, 100ms), "");
    EXPECT_EQ(answersUntil(5000ms), "");
    EXPECT_EQ(ask(print, 5000ms), "+    50.00 g  \r\n");
}

TEST_F(Sartorius, Waits_for_a_busy_balance_until_the_wait_is_cancelled) {
    have(1);
    addFault("busy");
    EXPECT_EQ(ask(print), "");
    EXPECT_EQ(answersUntil(3600s), "");
    EXPECT_EQ(ask("\x1bs3_\r\n", 3600s), "");
    instrument_->clearFaults();
    EXPECT_EQ(answersUntil(7200s), "");
}

TEST_F(Sartorius, Overload_and_underload_are_letters_or_words) {
    have(610.01);
    EXPECT_EQ(ask(print), "      H       \r\n");
    have(-61.01);
    EXPECT_EQ(ask(print), "      L       \r\n");
    have(610.01, {"line=22"});
    EXPECT_EQ(ask(print), "Stat        H       \r\n");
    have(610.01, {"line=22", "words"});
    EXPECT_EQ(ask(print), "Stat        High    \r\n");
    have(-61.01, {"line=22", "words"});
    EXPECT_EQ(ask(print), "Stat        Low     \r\n");
}

TEST_F(Sartorius, Shows_other_things_than_a_weight) {
    have(1, {"display=blank"});
    EXPECT_EQ(ask(print), "              \r\n");
    have(1, {"display=calibration"});
    EXPECT_EQ(ask(print), "      C       \r\n");
    have(1, {"display=final"});
    EXPECT_EQ(ask(print), "      --      \r\n");
    have(1, {"display=error"});
    EXPECT_EQ(ask(print), "   Err  54    \r\n");
    have(1, {"display=error-054"});
    EXPECT_EQ(ask(print), "   Err 054    \r\n");
    have(1, {"display=external-calibration"});
    EXPECT_EQ(ask(print), "   Cal. Ext.  \r\n");
    have(1, {"display=error", "line=22"});
    EXPECT_EQ(ask(print), "Stat     Err  54    \r\n");
    have(1, {"display=standby", "line=22"});
    EXPECT_EQ(ask(print), "Stat       OFF      \r\n");
}

TEST_F(Sartorius, A_verified_balance_brackets_its_last_digit) {
    have(123.56, {"verified"});
    EXPECT_EQ(ask(print), "+ 123.5[6] g  \r\n");
}

TEST_F(Sartorius, A_ninth_digit_stands_in_position_1) {
    have(0.11125507, {"unit=mg", "readability=0.00000001"});
    EXPECT_EQ(ask(print), "+111.25507 mg \r\n");
}

TEST_F(Sartorius, Tare_zeroes_near_zero_and_tares_elsewhere) {
    have(5);
    EXPECT_EQ(ask(tare + print), "+     0.00 g  \r\n");
    have(50);
    EXPECT_EQ(ask(tare + print), "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->balance().tareWeight(), 50);
}

TEST_F(Sartorius, Zero_and_tare_have_commands_of_their_own) {
    have(5);
    EXPECT_EQ(ask("\x1b"
                  "f4_" +
                  print),
              "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->balance().tareWeight(), 5);
    EXPECT_EQ(ask("\x1b"
                  "f3_" +
                  print),
              "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->balance().tareWeight(), 0);
}

TEST_F(Sartorius, A_typed_text_becomes_the_tare_by_soft_key_4) {
    have(0, {"line=22"});
    EXPECT_EQ(ask("\x1bt5.00_\r\n"), "");
    EXPECT_EQ(instrument_->balance().displayText(), "5.00");
    EXPECT_EQ(ask("\x1bkF4_\r\n" + print), "N1    -     5.00 g  \r\n");
    EXPECT_EQ(ask(tare + print), "N     +     0.00 g  \r\n");
}

TEST_F(Sartorius, A_stored_tare_is_added_to_the_container) {
    have(50);
    EXPECT_EQ(ask(tare + "\x1bt5.00_\x1bkF4_" + print), "-     5.00 g  \r\n");
    EXPECT_EQ(instrument_->balance().tareWeight(), 55);
}

TEST_F(Sartorius, A_stored_tare_may_have_a_line_of_its_own) {
    have(0, {"line=22", "tare-line=TP1"});
    EXPECT_EQ(ask("\x1bt5.00_\x1bkF4_" + print),
              "TP1   +     5.00 g  \r\nN1    -     5.00 g  \r\n");
    have(0, {"line=22", "tare-line=T1"});
    EXPECT_EQ(ask("\x1bt5.00_\x1bkF4_" + print),
              "T1    +     5.00 g  \r\nN1    -     5.00 g  \r\n");
}

TEST_F(Sartorius, Soft_key_4_does_nothing_in_another_application_or_without_a_number) {
    have(0, {"store-key=off"});
    EXPECT_EQ(ask("\x1bt5.00_\x1bkF4_" + print), "+     0.00 g  \r\n");
    have(0);
    EXPECT_EQ(ask("\x1btlot 7_\x1bkF4_" + print), "+     0.00 g  \r\n");
    EXPECT_EQ(ask("\x1bt999_\x1bkF4_" + print), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Cancel_forgets_what_was_typed) {
    have(0);
    EXPECT_EQ(ask("\x1bt5.00_\x1bs3_\x1bkF4_" + print), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Prints_ten_lines_a_second_unasked_from_the_switching_on_when_set_so) {
    have(1, {"auto-print"});
    answersUntil(0ms);  // the line of the switching on
    EXPECT_EQ(answersUntil(200ms), "+     1.00 g  \r\n+     1.00 g  \r\n");
}

}  // namespace
