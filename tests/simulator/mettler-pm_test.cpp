#include "InstrumentTest.h"

using simulator::Key;
using namespace std::chrono_literals;

namespace {

class MettlerPm : public InstrumentTest {
 protected:
    MettlerPm() : InstrumentTest("mettler-pm") {}
};

TEST_F(MettlerPm, S_sends_a_stable_weight) {
    Have(-12.34);
    EXPECT_EQ(Ask("S\r\n"), "S      -12.34 g\r\n");
}

TEST_F(MettlerPm, S_waits_until_the_pan_is_at_rest) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "S       50.00 g\r\n");
}

TEST_F(MettlerPm, S_gives_up_after_the_stability_time_out_without_a_value) {
    Have(0, {"stability-time-out=3s"});
    AddFault("busy");
    EXPECT_EQ(Ask("S\r\n"), "");
    EXPECT_EQ(AnswersUntil(3000ms), "SI\r\n");
}

TEST_F(MettlerPm, SI_tells_whether_the_pan_moves) {
    Have(0);
    EXPECT_EQ(Ask("SI\r\n"), "S        0.00 g\r\n");
    PutOn(50);
    EXPECT_EQ(Ask("SI\r\n", 100ms), "SD      24.33 g\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("SI\r\n", 200ms), "SI\r\n");
}

TEST_F(MettlerPm, Loads_out_of_range_have_no_value) {
    Have(610.01);
    EXPECT_EQ(Ask("S\r\nSI\r\n"), "SI+\r\nSI+\r\n");
    Have(-61.01);
    EXPECT_EQ(Ask("S\r\nSI\r\n"), "SI-\r\nSI-\r\n");
}

TEST_F(MettlerPm, SIR_repeats_until_another_weight_command) {
    Have(1);
    EXPECT_EQ(Ask("SIR\r\n"), "S        1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(400ms), "S        1.00 g\r\nS        1.00 g\r\n");
    EXPECT_EQ(Ask("S\r\n", 400ms), "S        1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "");
}

TEST_F(MettlerPm, T_tares_at_rest_without_an_answer) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("T\r\nSI\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "S        0.00 g\r\n");
}

TEST_F(MettlerPm, T_is_EL_when_it_can_not_be_done) {
    Have(-5);
    EXPECT_EQ(Ask("T\r\n"), "EL\r\n");
    Have(610.01);
    EXPECT_EQ(Ask("T\r\nTI\r\n"), "EL\r\nEL\r\n");
}

TEST_F(MettlerPm, B_presets_a_tare_and_B_0_clears_it) {
    Have(0);
    EXPECT_EQ(Ask("B 5.00\r\nS\r\n"), "S       -5.00 g\r\n");
    EXPECT_EQ(Ask("B 0\r\nS\r\n"), "S        0.00 g\r\n");
    EXPECT_EQ(Ask("B -1\r\nB 700\r\nB x\r\nB\r\n"), "EL\r\nEL\r\nEL\r\nEL\r\n");
}

TEST_F(MettlerPm, Unknown_commands_and_the_reset_of_MT_SICS_are_ES) {
    Have(0);
    EXPECT_EQ(Ask("@\r\nZ\r\nTA 5.00 g\r\n"), "ES\r\nES\r\nES\r\n");
    EXPECT_EQ(Ask("S 1\r\n"), "EL\r\n");
    EXPECT_EQ(Ask("ID\r\nU\r\n"), "");
}

TEST_F(MettlerPm, D_shows_a_text) {
    Have(0);
    EXPECT_EQ(Ask("D HELLO\r\n"), "");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "HELLO");
}

TEST_F(MettlerPm, An_empty_line_repeats_the_last_command_where_that_is_switched_on) {
    Have(1);
    EXPECT_EQ(Ask("SI\r\n\r\n"), "S        1.00 g\r\n");
    Have(1, {"empty-line-repeats"});
    EXPECT_EQ(Ask("\r\nSI\r\n\r\n"), "S        1.00 g\r\nS        1.00 g\r\n");
}

TEST_F(MettlerPm, A_character_of_wrong_parity_is_ET) {
    Have(1);
    simulator::Character damaged{'S'};
    damaged.parityError = true;
    instrument_->Receive(damaged, 0ms);
    EXPECT_EQ(instrument_->TakeOutput(), "ET\r\n");
}

TEST_F(MettlerPm, Answers_SI_while_S_waits_for_the_pan) {
    Have(1);
    AddFault("busy");
    EXPECT_EQ(Ask("S\r\nX\r\nSI\r\n"), "SI\r\n");
}

TEST_F(MettlerPm, Set_to_MT_SICS_it_speaks_that) {
    Have(12.34, {"protocol=mt-sics", "serial-number=0123456"});
    EXPECT_EQ(Ask("@\r\nS\r\nTA 5 g\r\n"),
              "I4 A \"0123456\"\r\nS S      12.34 g\r\nTA A       5.00 g\r\n");
}

// Instructions of the DataPac-M, 5.8 ff.: SR and SNR; the line is that of S.
TEST_F(MettlerPm, SR_and_SNR_send_a_weight_whenever_the_pan_has_come_to_rest) {
    for (const char* command : {"SR\r\n", "SNR\r\n"}) {
        Have(5);
        EXPECT_EQ(Ask(command), "S        5.00 g\r\n");
        PutOn(50);
        EXPECT_EQ(AnswersUntil(5s), "S       50.00 g\r\n");
        EXPECT_EQ(Ask("SI\r\n", 5s), "S       50.00 g\r\n");
        PutOn(5);
        EXPECT_EQ(AnswersUntil(10s), "");
    }
}

// An AT106 of the same family: CA begins and ends with a line each, CA 0 ends it without one.
TEST_F(MettlerPm, CA_adjusts_and_weighs_nothing_meanwhile) {
    Have(5, {"adjustment-time=3s"});
    EXPECT_EQ(Ask("CA\r\nSI\r\nS\r\nCA\r\n"), "CA BEGIN\r\nSI\r\nSI\r\nEL\r\n");
    EXPECT_EQ(AnswersUntil(3s), "CA END\r\n");
    EXPECT_EQ(Ask("SI\r\nCA\r\nCA 0\r\nSI\r\n", 4s),
              "S        5.00 g\r\nCA BEGIN\r\nS        5.00 g\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
    EXPECT_EQ(Ask("CA\r\n", 10s), "CA BEGIN\r\n");
    AddFault("busy");
    EXPECT_EQ(AnswersUntil(13s), "CA ERROR\r\n");
}

// An AT106 of the same family: 7 characters.
TEST_F(MettlerPm, IDX_says_an_identification_of_7_characters) {
    Have(5);
    EXPECT_EQ(Ask("IDX\r\n"), "1126493\r\n");
}

// An AT106 of the same family: RG F sets the fine range without an answer, RG ? says F then.
TEST_F(MettlerPm, RG_says_the_fine_range) {
    Have(5);
    EXPECT_EQ(Ask("RG F\r\nRG ?\r\nRG\r\nSI\r\n"), "F\r\nEL\r\nS        5.00 g\r\n");
}

// Instructions of the DataPac-M and an AT106: settings without an answer.
TEST_F(MettlerPm, Settings_are_taken_without_an_answer) {
    Have(5);
    EXPECT_EQ(Ask("MI 1\r\nML 2\r\nMZ 0\r\nAD 0\r\nM\r\nDY\r\nDX\r\nW\r\nSI\r\n"),
              "S        5.00 g\r\n");
}

TEST_F(MettlerPm, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "S       12.50 g\r\n");
}

TEST_F(MettlerPm, A_switch_that_is_set_while_it_runs_is_in_force_at_once) {
    Have(12.5);
    instrument_->Choose("protocol=mt-sics");
    EXPECT_EQ(Ask("S\r\n"), "S S      12.50 g\r\n");
    instrument_->Choose("unit=kg");
    EXPECT_EQ(Ask("S\r\n"), "S S    0.01250 kg\r\n");
}

}  // namespace
