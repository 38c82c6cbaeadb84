#include "InstrumentTest.h"

using simulator::Character;
using simulator::Fault;
using simulator::Instrument;
using simulator::Key;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

class Kern : public InstrumentTest {
 protected:
    Kern() : InstrumentTest("kern") {}
};

}  // namespace

TEST_F(Kern, O8_sends_one_record_at_once) {
    Have(12.5);
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n+  12.50 G S\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Kern, The_unit_has_two_characters) {
    Have(1500, {"unit=kg", "capacity=6000"});
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n+1.50000KG S\r\n");
    Have(12, {"unit=PCS", "readability=1"});
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n+     12PC S\r\n");
}

TEST_F(Kern, A_minus_sign_stands_in_front_of_the_blanks) {
    Have(-3.25);
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n-   3.25 G S\r\n");
}

TEST_F(Kern, A_moving_pan_is_U) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("O8\r\n", 100ms), "A00\r\n+  24.33 G U\r\n");
}

TEST_F(Kern, O9_is_acknowledged_at_once_and_sends_its_record_at_rest) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("O9\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(AnswersUntil(10s), "+  50.00 G S\r\n");
    EXPECT_EQ(AnswersUntil(20s), "");
}

TEST_F(Kern, O0_ends_a_record_that_is_waited_for) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("O9\r\nO0\r\n", 100ms), "A00\r\nA00\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Kern, O1_sends_records_until_another_output_command) {
    Have(12.5);
    EXPECT_EQ(Ask("O1\r\n"), "A00\r\n+  12.50 G S\r\n");
    EXPECT_EQ(AnswersUntil(400ms), "+  12.50 G S\r\n+  12.50 G S\r\n");
    EXPECT_EQ(Ask("O0\r\n", 500ms), "A00\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Kern, O1_goes_on_through_a_tare) {
    Have(12.5);
    Ask("O1\r\n");
    EXPECT_EQ(Ask("T \r\n", 100ms), "A00\r\n");
    EXPECT_EQ(AnswersUntil(200ms), "+   0.00 G S\r\n");
}

TEST_F(Kern, O2_sends_records_at_rest_only) {
    Have(0, {"interval=1s"});
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("O2\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(AnswersUntil(5100ms),
              "+  50.00 G S\r\n+  50.00 G S\r\n+  50.00 G S\r\n+  50.00 G S\r\n");
}

TEST_F(Kern, T_and_a_blank_tares) {
    Have(12.5);
    EXPECT_EQ(Ask("T \r\nO8\r\n"), "A00\r\nA00\r\n+   0.00 G S\r\n");
}

// Shinko AJ manual, 10.5: tare and zero are one command; E01 when the weight is in error.
TEST_F(Kern, T_zeroes_a_weight_below_zero) {
    Have(-1);
    EXPECT_EQ(Ask("T \r\nO8\r\n"), "A00\r\nA00\r\n+   0.00 G S\r\n");
}

TEST_F(Kern, T_is_refused_out_of_range_and_far_below_zero) {
    Have(-12.41);
    EXPECT_EQ(Ask("T \r\nO8\r\n"), "E01\r\nA00\r\n-  12.41 G S\r\n");
    Have(-70);
    EXPECT_EQ(Ask("T \r\n"), "E01\r\n");
    Have(1000);
    EXPECT_EQ(Ask("T \r\n"), "E01\r\n");
}

TEST_F(Kern, Commands_of_another_form_are_refused) {
    Have(0);
    for (const char* command : {"T\r\n", "O8 \r\n", "O\r\n", "OC\r\n", "o8\r\n", "\r\n", "S\r\n"})
        EXPECT_EQ(Ask(command), "E01\r\n") << command;
}

// Shinko AJ manual, 10.5, and Kern e-1226, chapter 8: output control. O3 sends a record with the
// key, O7 one at rest; after O0 there is none.
TEST_F(Kern, O3_and_O7_send_a_record_when_the_key_is_pressed) {
    Have(0);
    const auto key = [&] {
        instrument_->Press(simulator::Key::Print);
        return instrument_->TakeOutput();
    };
    EXPECT_EQ(Ask("O3\r\n"), "A00\r\n");
    instrument_->Balance().SetLoad(50);
    AnswersUntil(100ms);
    EXPECT_EQ(key(), "+  24.33 G U\r\n");
    EXPECT_EQ(Ask("O7\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(AnswersUntil(5s), "+  50.00 G S\r\n");
    EXPECT_EQ(Ask("O0\r\n", 5s), "A00\r\n");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Kern, After_a_power_cut_the_key_sends_a_record_again) {
    Have(5);
    EXPECT_EQ(Ask("O0\r\n"), "A00\r\n");
    instrument_->AddFault(Fault::Parse("power-cut@1s+1s"));
    AnswersUntil(3s);
    instrument_->Press(simulator::Key::Print);
    EXPECT_EQ(instrument_->TakeOutput(), "+   0.00 G S\r\n");
}

// Shinko AJ manual, 10.5: one stable record for each load, when zero or less was shown in between.
TEST_F(Kern, O4_sends_one_record_for_each_load) {
    Have(0);
    EXPECT_EQ(Ask("O4\r\n"), "A00\r\n");
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(AnswersUntil(5s), "+  50.00 G S\r\n");
    instrument_->Balance().SetLoad(80);
    EXPECT_EQ(AnswersUntil(10s), "");
    instrument_->Balance().SetLoad(0);
    EXPECT_EQ(AnswersUntil(15s), "");
    instrument_->Balance().SetLoad(20);
    EXPECT_EQ(AnswersUntil(20s), "+  20.00 G S\r\n");
}

// Shinko AJ manual, 10.5: one record at rest, again after each unstable time, zero included.
TEST_F(Kern, O5_sends_one_record_whenever_the_pan_has_come_to_rest) {
    Have(0);
    EXPECT_EQ(Ask("O5\r\n"), "A00\r\n+   0.00 G S\r\n");
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(AnswersUntil(5s), "+  50.00 G S\r\n");
    instrument_->Balance().SetLoad(0);
    EXPECT_EQ(AnswersUntil(10s), "+   0.00 G S\r\n");
    EXPECT_EQ(Ask("O0\r\n", 10s), "A00\r\n");
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(AnswersUntil(15s), "");
}

// Shinko AJ manual, 10.5: O6 is O5, and sends all the time while the weight is unstable.
TEST_F(Kern, O6_sends_records_while_the_pan_moves_and_one_at_rest) {
    Have(0, {"interval=300ms"});
    EXPECT_EQ(Ask("O6\r\n"), "A00\r\n+   0.00 G S\r\n");
    EXPECT_EQ(AnswersUntil(3s), "");
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(AnswersUntil(10s),
              "+  43.23 G U\r\n+  49.08 G U\r\n+  49.88 G U\r\n+  49.98 G U\r\n+  50.00 G U\r\n+  "
              "50.00 G S\r\n");
}

// Only named in the manuals: they are acknowledged and send nothing.
TEST_F(Kern, OA_and_OB_are_acknowledged) {
    Have(0);
    EXPECT_EQ(Ask("OA\r\nOB\r\n"), "A00\r\nA00\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
}

TEST_F(Kern, A_command_with_a_damaged_character_is_refused) {
    Have(0);
    instrument_->Receive(Character{'O', false, true}, 0ms);
    EXPECT_EQ(Ask("8\r\n"), "E01\r\n");
}

TEST_F(Kern, Out_of_range_the_status_is_E) {
    Have(700);
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n+ 700.00 G E\r\n");
    Have(-70);
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n-  70.00 G E\r\n");
}

TEST_F(Kern, The_7_digit_format_has_a_character_more) {
    Have(12.345, {"digits=7", "readability=0.001"});
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n+  12.345 G S\r\n");
}

TEST_F(Kern, Zeros_can_take_the_place_of_the_blanks) {
    Have(-3.25, {"fill=zero"});
    EXPECT_EQ(Ask("O8\r\n"), "A00\r\n-0003.25 G S\r\n");
}

TEST_F(Kern, The_acknowledgement_can_stand_behind_the_record_or_be_missing) {
    Have(12.5, {"acknowledgement=last"});
    EXPECT_EQ(Ask("O8\r\n"), "+  12.50 G S\r\nA00\r\n");
    Have(12.5, {"acknowledgement=none"});
    EXPECT_EQ(Ask("O9\r\n"), "+  12.50 G S\r\n");
    EXPECT_EQ(Ask("T \r\n"), "A00\r\n");
}

TEST_F(Kern, A_balance_that_never_rests_sends_nothing_for_O9) {
    Have(12.5);
    instrument_->AddFault(Fault::Parse("busy"));
    EXPECT_EQ(Ask("O9\r\n"), "A00\r\n");
    EXPECT_EQ(AnswersUntil(60s), "");
    EXPECT_EQ(Ask("O8\r\n", 60s), "A00\r\n+  12.50 G U\r\n");
}

TEST_F(Kern, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "+  12.50 G S\r\n");
}
