#include "InstrumentTest.h"

using simulator::Character;
using simulator::Instrument;
using simulator::Key;
using namespace std::chrono_literals;

namespace {

class MtSics : public InstrumentTest {
 protected:
    MtSics() : InstrumentTest("mettler-toledo") {}
};

}  // namespace

TEST_F(MtSics, S_sends_a_stable_weight_in_ten_columns) {
    Have(100);
    EXPECT_EQ(Ask("S\r\n"), "S S     100.00 g\r\n");
}

TEST_F(MtSics, A_minus_sign_touches_the_digits) {
    Have(-12.5);
    EXPECT_EQ(Ask("S\r\n"), "S S     -12.50 g\r\n");
}

TEST_F(MtSics, S_waits_until_the_pan_is_at_rest) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "S S      50.00 g\r\n");
}

TEST_F(MtSics, SI_is_answered_with_S_and_the_state_of_the_pan) {
    Have(0);
    EXPECT_EQ(Ask("SI\r\n"), "S S       0.00 g\r\n");
    PutOn(50);
    EXPECT_EQ(Ask("SI\r\n", 100ms), "S D      24.33 g\r\n");
}

TEST_F(MtSics, A_command_that_comes_during_a_wait_is_carried_out_after_it) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nTA\r\nI4\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms),
              "S S      50.00 g\r\nTA A       0.00 g\r\nI4 A \"1126493049\"\r\n");
}

TEST_F(MtSics, Reset_cancels_what_is_waited_for_and_keeps_the_tare) {
    Have(0);
    EXPECT_EQ(Ask("TA 7.5 g\r\n"), "TA A       7.50 g\r\n");
    PutOn(50);
    EXPECT_EQ(Ask("S\r\n@\r\n", 100ms), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "");
    EXPECT_EQ(Ask("S\r\n", 5000ms), "S S      42.50 g\r\n");
}

TEST_F(MtSics, Reset_stays_unanswered_where_that_is_switched_off) {
    Have(1, {"reset-answer=off"});
    EXPECT_EQ(Ask("@\r\n"), "");
    EXPECT_EQ(Ask("I4\r\n"), "I4 A \"1126493049\"\r\n");
}

TEST_F(MtSics, After_a_power_cut_it_sends_its_serial_number_unasked) {
    Have(1, {"serial-number=B044321"});
    instrument_->AddFault(simulator::Fault::Parse("power-cut@1s+2s"));
    EXPECT_EQ(AnswersUntil(2999ms), "");
    EXPECT_EQ(AnswersUntil(3000ms), "I4 A \"B044321\"\r\n");
    Have(1, {"power-on-line=off"});
    instrument_->AddFault(simulator::Fault::Parse("power-cut@1s+2s"));
    EXPECT_EQ(AnswersUntil(4000ms), "");
}

TEST_F(MtSics, Waiting_ends_with_I_at_the_stability_time_out) {
    Have(0, {"stability-time-out=3s"});
    instrument_->AddFault(simulator::Fault::Parse("busy"));
    EXPECT_EQ(Ask("S\r\n"), "");
    EXPECT_EQ(AnswersUntil(2999ms), "");
    EXPECT_EQ(AnswersUntil(3000ms), "S I\r\n");
    EXPECT_EQ(Ask("Z\r\n", 4000ms), "");
    EXPECT_EQ(AnswersUntil(7000ms), "Z I\r\n");
    EXPECT_EQ(Ask("T\r\n", 8000ms), "");
    EXPECT_EQ(AnswersUntil(11000ms), "T I\r\n");
}

TEST_F(MtSics, Loads_out_of_range_are_plus_and_minus) {
    Have(610.01);
    EXPECT_EQ(Ask("S\r\nSI\r\nT\r\nZ\r\n"), "S +\r\nS +\r\nT +\r\nZ +\r\n");
    Have(-61.01);
    EXPECT_EQ(Ask("S\r\nSI\r\nT\r\nZ\r\n"), "S -\r\nS -\r\nT -\r\nZ -\r\n");
}

TEST_F(MtSics, Zero_is_refused_outside_its_range) {
    Have(12.2);
    EXPECT_EQ(Ask("Z\r\nS\r\n"), "Z A\r\nS S       0.00 g\r\n");
    Have(12.21);
    EXPECT_EQ(Ask("Z\r\n"), "Z +\r\n");
}

TEST_F(MtSics, Tare_answers_with_the_tare_weight) {
    Have(100);
    EXPECT_EQ(Ask("T\r\nS\r\n"), "T S     100.00 g\r\nS S       0.00 g\r\n");
}

TEST_F(MtSics, TA_sets_and_shows_the_tare_and_TAC_clears_it) {
    Have(100);
    EXPECT_EQ(Ask("TA 12.50 g\r\n"), "TA A      12.50 g\r\n");
    EXPECT_EQ(Ask("TA\r\n"), "TA A      12.50 g\r\n");
    EXPECT_EQ(Ask("SI\r\n"), "S S      87.50 g\r\n");
    EXPECT_EQ(Ask("TAC\r\nTA\r\n"), "TAC A\r\nTA A       0.00 g\r\n");
}

TEST_F(MtSics, TA_with_a_bad_parameter_gets_L_and_changes_nothing) {
    Have(100);
    EXPECT_EQ(Ask("TA 12.50\r\nTA g\r\nTA 1 kg\r\nTA -1 g\r\nTA 611 g\r\n"),
              "TA L\r\nTA L\r\nTA L\r\nTA L\r\nTA L\r\n");
    EXPECT_EQ(Ask("TA\r\n"), "TA A       0.00 g\r\n");
}

TEST_F(MtSics, D_shows_a_text_and_DW_the_weight_again) {
    Have(1);
    EXPECT_EQ(Ask("D \"READY\"\r\n"), "D A\r\n");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "READY");
    EXPECT_EQ(Ask("DW\r\n"), "DW A\r\n");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "");
}

TEST_F(MtSics, D_cuts_a_text_that_is_longer_than_the_display) {
    Have(1, {"display-width=7"});
    EXPECT_EQ(Ask("D \"READY TO GO\"\r\n"), "D R\r\n");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "READY T");
    EXPECT_EQ(Ask("D READY\r\n"), "D L\r\n");
}

TEST_F(MtSics, Switched_off_it_weighs_nothing_and_switched_on_it_sends_its_number) {
    Have(1);
    EXPECT_EQ(Ask("PWR 0\r\nS\r\nSI\r\nT\r\nZ\r\nTA\r\n"),
              "PWR A\r\nS I\r\nS I\r\nT I\r\nZ I\r\nTA I\r\n");
    EXPECT_EQ(Ask("PWR 1\r\nS\r\n"), "PWR A\r\nI4 A \"1126493049\"\r\nS S       1.00 g\r\n");
    EXPECT_EQ(Ask("PWR\r\nPWR 2\r\n"), "PWR L\r\nPWR L\r\n");
}

TEST_F(MtSics, SIR_repeats_until_another_weight_is_asked_for) {
    Have(1, {"repeat-interval=500ms"});
    EXPECT_EQ(Ask("SIR\r\n"), "S S       1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(1000ms), "S S       1.00 g\r\nS S       1.00 g\r\n");
    EXPECT_EQ(Ask("I4\r\n", 1000ms), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(AnswersUntil(1500ms), "S S       1.00 g\r\n");
    EXPECT_EQ(Ask("SI\r\n", 1600ms), "S S       1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "");
}

TEST_F(MtSics, Unknown_commands_get_ES_and_needless_parameters_EL) {
    Have(1);
    EXPECT_EQ(Ask("B 5.00\r\n"), "ES\r\n");
    EXPECT_EQ(Ask("si\r\n"), "ES\r\n");
    EXPECT_EQ(Ask("S 1\r\n"), "EL\r\n");
    EXPECT_EQ(Ask("\r\n"), "");
}

TEST_F(MtSics, A_command_waits_for_its_whole_line_end) {
    Have(1);
    EXPECT_EQ(Ask("S"), "");
    EXPECT_EQ(Ask("I\r", 10ms), "");
    EXPECT_EQ(Ask("\n", 20ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, Wrong_parity_gets_one_ET_for_the_command) {
    Have(1);
    instrument_->Receive(Character{'S', true, false}, 0ms);
    instrument_->Receive(Character{'I', true, false}, 1ms);
    EXPECT_EQ(instrument_->TakeOutput(), "ET\r\n");
    EXPECT_EQ(Ask("\r\nSI\r\n", 2ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, After_a_spoiled_line_end_a_pause_begins_a_new_command) {
    Have(1);
    for (const char byte : {'S', '\r', '\n'})
        instrument_->Receive(Character{byte, true, false}, 0ms);
    EXPECT_EQ(instrument_->TakeOutput(), "ET\r\n");
    EXPECT_EQ(Ask("SI\r\n", 200ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, A_break_gets_ET) {
    Have(1);
    instrument_->ReceiveBreak(0ms);
    EXPECT_EQ(instrument_->TakeOutput(), "ET\r\n");
}

// Reference manual MT-SICS for the Excellence line, commands of level 0 and 1; the quoted texts are
// answers of a JE1002G, an XS204 and a WXS205SDU.
TEST_F(MtSics, I0_lists_every_command_that_the_level_1_balance_answers) {
    Have(1);
    EXPECT_EQ(Ask("I0\r\n"),
              "I0 B 0 \"I0\"\r\nI0 B 0 \"I1\"\r\nI0 B 0 \"I2\"\r\nI0 B 0 \"I3\"\r\n"
              "I0 B 0 \"I4\"\r\nI0 B 0 \"I5\"\r\nI0 B 0 \"S\"\r\nI0 B 0 \"SI\"\r\n"
              "I0 B 0 \"SIR\"\r\nI0 B 0 \"Z\"\r\nI0 B 0 \"ZI\"\r\nI0 B 0 \"@\"\r\n"
              "I0 B 1 \"D\"\r\nI0 B 1 \"DW\"\r\nI0 B 1 \"SR\"\r\nI0 B 1 \"T\"\r\n"
              "I0 B 1 \"TA\"\r\nI0 B 1 \"TAC\"\r\nI0 B 1 \"TI\"\r\nI0 A 2 \"PWR\"\r\n");
}

TEST_F(MtSics, I0_lists_what_answers_and_what_it_does_not_list_gets_ES) {
    const std::vector<std::string> all = {
        "I0",  "I1",  "I2",   "I3",  "I4",  "I5",  "S",    "SI",  "SIR", "Z",  "ZI",  "@",
        "D",   "DW",  "SC",   "SR",  "T",   "TA",  "TAC",  "TC",  "TI",  "ZC", "C1",  "C3",
        "DAT", "I10", "I11",  "M21", "PWR", "SIS", "SNR",  "TIM", "UPD", "C",  "C0",  "C2",
        "E01", "I6",  "I14",  "I15", "I26", "I50", "K",    "M02", "M28", "PW", "RDB", "SIRU",
        "SIU", "SM0", "SNRU", "SRU", "ST",  "SU",  "TST0", "WS",  "si",  "I",  "TAX", "U"};
    for (const std::string model : {"level-1", "xs204", "wxs205", "pr2003", "sb32001"}) {
        Have(1, {"model=" + model});
        const std::string list = Ask("I0\r\n");
        for (const std::string& command : all) {
            Have(1, {"model=" + model});
            const bool isListed = list.find('"' + command + '"') != std::string::npos;
            EXPECT_EQ(Ask(command + "\r\n") != "ES\r\n", isListed) << model << " " << command;
        }
    }
}

// I1: levels, then the version of each level. I2: type, capacity with the overrange, unit. I3:
// version of the software and type definition. I5: 8 digits and an index letter.
TEST_F(MtSics, Each_model_says_its_own_texts) {
    Have(1);
    EXPECT_EQ(Ask("I1\r\nI2\r\nI3\r\nI5\r\n"),
              "I1 A \"01\" \"2.30\" \"2.22\"\r\nI2 A \"MT-SICS 610.00 g\"\r\n"
              "I3 A \"1.20 34.28.3.4485.1729\"\r\nI5 A \"11671158C\"\r\n");
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("I1\r\nI2\r\nI11\r\nS\r\n"),
              "I1 A \"0123\" \"2.30\" \"2.22\" \"2.33\" \"2.20\"\r\n"
              "I2 A \"XS204 Excellence 220.0090 g\"\r\nI11 A \"XS204\"\r\n"
              "S S     1.0000 g\r\n");
    Have(1, {"model=wxs205"});
    EXPECT_EQ(Ask("I1\r\nI2\r\nI3\r\nI11\r\nS\r\n"),
              "I1 A \"01\" \"2.30\" \"2.22\"\r\nI2 A \"WXS205SDU WXA-Bridge 220.00900 g\"\r\n"
              "I3 A \"1.10 18.6.4.1361.772\"\r\nI11 A \"WXS205SDU\"\r\nS S    1.00000 g\r\n");
    Have(1, {"model=pr2003"});
    EXPECT_EQ(Ask("I2\r\nS\r\n"), "I2 A \"PR2003 2100.000 g\"\r\nS S      1.000 g\r\n");
    Have(1, {"model=sb32001"});
    EXPECT_EQ(Ask("I2\r\nS\r\n"), "I2 A \"SB32001 32100.0 g\"\r\nS S        1.0 g\r\n");
}

TEST_F(MtSics, The_load_that_I2_names_is_weighed_and_more_is_overload) {
    Have(220.009, {"model=wxs205"});
    EXPECT_EQ(Ask("SI\r\n"), "S S  220.00900 g\r\n");
    Have(220.00901, {"model=wxs205"});
    EXPECT_EQ(Ask("SI\r\n"), "S +\r\n");
}

TEST_F(MtSics, A_busy_balance_does_not_say_what_it_is) {
    Have(1);
    AddFault("busy");
    EXPECT_EQ(Ask("I0\r\nI1\r\nI2\r\nI3\r\nI4\r\nI5\r\n"),
              "I0 I\r\nI1 I\r\nI2 I\r\nI3 I\r\nI4 I\r\nI5 I\r\n");
}

// Level 0: ZI zeroes at once and says whether the pan was at rest.
TEST_F(MtSics, ZI_zeroes_at_once_and_says_whether_the_weight_moved) {
    Have(5);
    EXPECT_EQ(Ask("TA 1 g\r\nZI\r\nSI\r\n"), "TA A       1.00 g\r\nZI S\r\nS S       0.00 g\r\n");
    PutOn(8);
    EXPECT_EQ(Ask("ZI\r\n", 100ms), "ZI D\r\n");
    AnswersUntil(5s);
    EXPECT_EQ(Ask("SI\r\n", 5s), "S S       1.54 g\r\n");
    Have(12.21);
    EXPECT_EQ(Ask("ZI\r\n"), "ZI +\r\n");
    Have(-12.21);
    EXPECT_EQ(Ask("ZI\r\n"), "ZI -\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("ZI\r\n"), "ZI I\r\n");
}

// Level 1: TI tares at once.
TEST_F(MtSics, TI_tares_at_once_and_says_whether_the_weight_moved) {
    Have(100);
    EXPECT_EQ(Ask("TI\r\nSI\r\n"), "TI S     100.00 g\r\nS S       0.00 g\r\n");
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("TI\r\n", 100ms), "TI D      24.33 g\r\n");
    EXPECT_EQ(Ask("S\r\n", 5s), "S S      25.67 g\r\n");
    Have(-1);
    EXPECT_EQ(Ask("TI\r\n"), "TI -\r\n");
    Have(611);
    EXPECT_EQ(Ask("TI\r\n"), "TI +\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("TI\r\n"), "TI I\r\n");
}

// A JE1002G answers the query with S, the manuals say A.
TEST_F(MtSics, TA_as_a_query_says_A_or_S_and_as_a_setting_A) {
    Have(100, {"tare-query=S"});
    EXPECT_EQ(Ask("TA 12.50 g\r\nTA\r\n"), "TA A      12.50 g\r\nTA S      12.50 g\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("TA\r\nTAC\r\n"), "TA I\r\nTAC I\r\n");
}

TEST_F(MtSics, TAC_takes_no_parameters) {
    Have(100);
    EXPECT_EQ(Ask("TA 5 g\r\nTAC 1\r\nSI\r\n"),
              "TA A       5.00 g\r\nTAC L\r\nS S      95.00 g\r\n");
}

// Instructions of the JS balances, p. 30: a line after each change of 12.5 % of the last stable
// weight, of 30 steps at least, or of the step that the host names.
TEST_F(MtSics, SR_sends_a_stable_weight_and_then_each_change) {
    Have(100);
    EXPECT_EQ(Ask("SR\r\n"), "S S     100.00 g\r\n");
    PutOn(112);
    EXPECT_EQ(AnswersUntil(5s), "");
    PutOn(120);
    EXPECT_EQ(AnswersUntil(10s), "S D     114.27 g\r\nS S     120.00 g\r\n");
    EXPECT_EQ(Ask("SI\r\n", 10s), "S S     120.00 g\r\n");
    PutOn(20);
    EXPECT_EQ(AnswersUntil(20s), "");
}

TEST_F(MtSics, SR_with_a_step_sends_a_change_of_that_step) {
    Have(100);
    EXPECT_EQ(Ask("SR 0.5 g\r\n"), "S S     100.00 g\r\n");
    PutOn(100.4);
    EXPECT_EQ(AnswersUntil(5s), "");
    PutOn(100.5);
    EXPECT_EQ(AnswersUntil(10s), "S D     100.50 g\r\nS S     100.50 g\r\n");
    EXPECT_EQ(Ask("SR 0.5\r\nSR 0 g\r\n", 10s), "SR L\r\nSR L\r\n");
    Have(0.1);
    EXPECT_EQ(Ask("SR\r\n"), "S S       0.10 g\r\n");
    PutOn(0.39);
    EXPECT_EQ(AnswersUntil(5s), "");
    PutOn(0.4);
    EXPECT_EQ(AnswersUntil(10s), "S S       0.40 g\r\n");
}

// Level 2: SNR sends stable weights only.
TEST_F(MtSics, SNR_sends_stable_weights_only) {
    Have(100, {"model=xs204"});
    EXPECT_EQ(Ask("SNR\r\n"), "S S   100.0000 g\r\n");
    PutOn(120);
    EXPECT_EQ(AnswersUntil(5s), "S S   120.0000 g\r\n");
    PutOn(500);
    EXPECT_EQ(AnswersUntil(10s), "");
    EXPECT_EQ(Ask("SNR 1\r\n", 10s), "SNR L\r\n");
}

// Weigh modules: SC, TC and ZC take the value of the moment when their time is over.
TEST_F(MtSics, Timed_commands_take_what_is_there_when_their_time_is_over) {
    Have(0, {"timed-commands"});
    PutOn(50);
    EXPECT_EQ(Ask("SC 100\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(200ms), "S D      36.82 g\r\n");
    EXPECT_EQ(Ask("SC 10000\r\n", 200ms), "");
    EXPECT_EQ(AnswersUntil(5s), "S S      50.00 g\r\n");
    PutOn(60);
    EXPECT_EQ(Ask("TC 100\r\n", 5s), "");
    EXPECT_EQ(AnswersUntil(5100ms), "T D      54.87 g\r\n");
    EXPECT_EQ(Ask("S\r\n", 9s), "S S       5.13 g\r\n");
    PutOn(1);
    EXPECT_EQ(Ask("ZC 20000\r\nSI\r\n", 9s), "");
    EXPECT_EQ(AnswersUntil(12s), "Z A\r\nS S       0.00 g\r\n");
    EXPECT_EQ(Ask("SC\r\nTC -1\r\nZC x\r\n", 12s), "S L\r\nT L\r\nZ L\r\n");
}

// Reference manual, level 1: D and DW answer I when they can not be carried out now.
TEST_F(MtSics, D_and_DW_are_I_while_the_balance_is_occupied) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("C3\r\nD \"READY\"\r\nDW\r\n"), "C3 B\r\nD I\r\nDW I\r\n");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "");
}

// Instructions of the JS, ML and AL-IC balances, level 2: SU, SIU, SIRU, SRU and SNRU are S, SI,
// SIR, SR and SNR in the unit of the display.
TEST_F(MtSics, SU_and_its_like_send_the_unit_of_the_display) {
    Have(100, {"model=xs204", "unit=kg"});
    EXPECT_EQ(Ask("S\r\nSU\r\n"), "S S  0.1000000 kg\r\nS S  0.1000000 kg\r\n");
    EXPECT_EQ(Ask("M21 0 0\r\nS\r\nSU\r\nSI\r\nSIU\r\n"),
              "M21 A\r\nS S   100.0000 g\r\nS S  0.1000000 kg\r\nS S   100.0000 g\r\n"
              "S S  0.1000000 kg\r\n");
    EXPECT_EQ(Ask("SIRU\r\n"), "S S  0.1000000 kg\r\n");
    EXPECT_EQ(AnswersUntil(200ms), "S S  0.1000000 kg\r\n");
    EXPECT_EQ(Ask("SNRU\r\n", 300ms), "S S  0.1000000 kg\r\n");
    PutOn(120);
    EXPECT_EQ(AnswersUntil(5s), "S S  0.1200000 kg\r\n");
    EXPECT_EQ(Ask("SRU 0.01 kg\r\n", 5s), "S S  0.1200000 kg\r\n");
    PutOn(135);
    EXPECT_EQ(AnswersUntil(10s), "S D  0.1310460 kg\r\nS S  0.1350000 kg\r\n");
    EXPECT_EQ(Ask("SRU 1 g\r\nSNRU 1 g\r\nSR 1 kg\r\n", 10s), "SRU L\r\nSNRU L\r\nSR L\r\n");
}

TEST_F(MtSics, SU_waits_for_the_pan_and_SIU_does_not) {
    Have(0, {"model=sb32001"});
    PutOn(5000);
    EXPECT_EQ(Ask("M21 0 1\r\nSIU\r\nSU\r\n", 100ms), "M21 A\r\nS D     2432.9 g\r\n");
    EXPECT_EQ(AnswersUntil(5s), "S S     5000.0 g\r\n");
    EXPECT_EQ(
        Ask("S\r\nT\r\nTA\r\nSU\r\n", 5s),
        "S S     5.0000 kg\r\nT S     5.0000 kg\r\nTA A     5.0000 kg\r\nS S        0.0 g\r\n");
}

// A WXS205SDU: minutes since it was switched on.
TEST_F(MtSics, I15_says_for_how_many_minutes_it_has_been_on) {
    Have(1, {"model=wxs205", "power-on-line=off"});
    EXPECT_EQ(Ask("I15\r\n", 59s), "I15 A 0\r\n");
    EXPECT_EQ(Ask("I15\r\n", 600s), "I15 A 10\r\n");
    AddFault("power-cut@700s+20s");
    AnswersUntil(800s);
    EXPECT_EQ(Ask("I15\r\n", 800s), "I15 A 1\r\n");
}

// Level 2: a line for each probe, the last one with A.
TEST_F(MtSics, M28_says_the_temperature_of_its_probe) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("M28\r\n"), "M28 A 1 21.8\r\n");
}

// A balance with doors: 0 is closed.
TEST_F(MtSics, WS_says_that_the_doors_are_closed_and_closes_them) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("WS\r\nWS 0\r\nWS x\r\n"), "WS A 0\r\nWS A\r\nWS L\r\n");
}

// A balance that is adjusted by its host: mode, weight and text; 2 where it wants an adjustment.
TEST_F(MtSics, C0_says_whether_an_adjustment_is_wanted) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("C0\r\nC0 0\r\n"), "C0 A 1 0 \"\"\r\nC0 L\r\n");
    Have(1, {"model=xs204", "adjustment-wanted", "adjustment-time=5s"});
    EXPECT_EQ(Ask("C0\r\nC3\r\nC0\r\n"), "C0 A 2 0 \"\"\r\nC3 B\r\nC0 I\r\n");
    EXPECT_EQ(Ask("C0\r\n", 6s), "C3 A\r\nC0 A 1 0 \"\"\r\n");
}

// Weigh modules: C ends what was begun on this line, and is no reset.
TEST_F(MtSics, C_ends_what_a_weigh_module_waits_for_and_repeats) {
    Have(1, {"timed-commands"});
    EXPECT_EQ(Ask("SIR\r\nC\r\n"), "S S       1.00 g\r\nC B\r\nC A\r\n");
    EXPECT_EQ(AnswersUntil(5s), "");
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nC\r\n", 5100ms), "C B\r\nC A\r\n");
    EXPECT_EQ(AnswersUntil(10s), "");
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nC\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5s), "S S      50.00 g\r\nES\r\n");
}

// Weigh modules: a number of an error stands in place of value and unit.
TEST_F(MtSics, A_faulty_cell_sends_the_number_of_its_error) {
    Have(100, {"faulty-cell"});
    EXPECT_EQ(Ask("S\r\nSI\r\n"), "S S    Error 10b\r\nS S    Error 10b\r\n");
    Have(100, {"faulty-cell", "model=wxs205"});
    EXPECT_EQ(Ask("SIS\r\n").substr(0, 8), "SIS A 6 ");
}

// Level 2: M21 0 sets the unit of S, SI, T and TA; codes 0 g, 1 kg, 3 mg, 4 ug, 5 ct, 7 lb, 8 oz.
TEST_F(MtSics, M21_sets_the_unit_of_the_weights) {
    Have(12.5, {"model=xs204"});
    EXPECT_EQ(Ask("M21 0 0\r\nS\r\n"), "M21 A\r\nS S    12.5000 g\r\n");
    EXPECT_EQ(Ask("M21 0 1\r\nS\r\n"), "M21 A\r\nS S  0.0125000 kg\r\n");
    EXPECT_EQ(Ask("M21 0 3\r\nS\r\n"), "M21 A\r\nS S    12500.0 mg\r\n");
    EXPECT_EQ(Ask("M21 0 4\r\nSI\r\n"), "M21 A\r\nS S   12500000 ug\r\n");
    EXPECT_EQ(Ask("M21 0 5\r\nS\r\n"), "M21 A\r\nS S    62.5000 ct\r\n");
    EXPECT_EQ(Ask("M21 0 7\r\nS\r\n"), "M21 A\r\nS S  0.0275578 lb\r\n");
    EXPECT_EQ(Ask("M21 0 8\r\nS\r\n"), "M21 A\r\nS S   0.440925 oz\r\n");
}

TEST_F(MtSics, Tares_are_in_the_unit_of_the_host) {
    Have(12.5, {"model=xs204"});
    EXPECT_EQ(Ask("M21 0 3\r\nTA 2500 mg\r\nS\r\nTA 1 g\r\nT\r\n"),
              "M21 A\r\nTA A     2500.0 mg\r\nS S    10000.0 mg\r\nTA L\r\nT S    12500.0 mg\r\n");
}

TEST_F(MtSics, M21_refuses_other_codes_and_keeps_the_unit) {
    Have(12.5, {"model=xs204"});
    EXPECT_EQ(Ask("M21 0 2\r\nM21 1 3\r\nM21\r\nS\r\n"),
              "M21 L\r\nM21 L\r\nM21 L\r\nS S    12.5000 g\r\n");
}

TEST_F(MtSics, The_unit_of_the_host_lasts_until_one_is_set_at_the_menu) {
    Have(12.5, {"model=xs204"});
    EXPECT_EQ(Ask("M21 0 3\r\n"), "M21 A\r\n");
    instrument_->Choose("noise=0");
    EXPECT_EQ(Ask("S\r\n"), "S S    12500.0 mg\r\n");
    instrument_->Choose("unit=g");
    EXPECT_EQ(Ask("S\r\n"), "S S    12.5000 g\r\n");
}

// Level 2: I10, the name of the balance: 20 characters, kept over the reset and the mains.
TEST_F(MtSics, I10_keeps_the_name_that_a_host_gives) {
    Have(1, {"model=xs204", "power-on-line=off"});
    EXPECT_EQ(Ask("I10\r\nI10 \"My Balance\"\r\nI10\r\n"),
              "I10 A \"\"\r\nI10 A\r\nI10 A \"My Balance\"\r\n");
    EXPECT_EQ(Ask("I10 \"123456789012345678901\"\r\nI10 x\r\n"), "I10 L\r\nI10 L\r\n");
    AddFault("power-cut@1s+2s");
    AnswersUntil(4s);
    EXPECT_EQ(Ask("@\r\nI10\r\n", 4s), "I4 A \"1126493049\"\r\nI10 A \"My Balance\"\r\n");
}

// Level 2: C3 adjusts with the built-in weight: B when it begins, A or I when it is over.
TEST_F(MtSics, C3_begins_and_ends_with_a_line_and_weighs_nothing_in_between) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("C3\r\nSI\r\nC3\r\n"), "C3 B\r\nS I\r\nC3 I\r\n");
    EXPECT_EQ(Ask("S\r\nT\r\nZ\r\nI2\r\n", 59s), "S I\r\nT I\r\nZ I\r\nI2 I\r\n");
    EXPECT_EQ(AnswersUntil(60s), "C3 A\r\n");
    EXPECT_EQ(Ask("SI\r\n", 60s), "S S     1.0000 g\r\n");
}

TEST_F(MtSics, An_adjustment_of_a_restless_pan_ends_with_I) {
    Have(1, {"model=xs204", "adjustment-time=2s"});
    EXPECT_EQ(Ask("C1\r\n"), "C1 B\r\n");
    AddFault("busy");
    EXPECT_EQ(AnswersUntil(2s), "C1 I\r\n");
}

TEST_F(MtSics, A_reset_and_a_power_cut_end_an_adjustment) {
    Have(1, {"model=xs204", "power-on-line=off"});
    EXPECT_EQ(Ask("C3\r\n@\r\nSI\r\n"), "C3 B\r\nI4 A \"1126493049\"\r\nS S     1.0000 g\r\n");
    EXPECT_EQ(Ask("C3\r\n", 1s), "C3 B\r\n");
    AddFault("power-cut@2s+1s");
    EXPECT_EQ(AnswersUntil(70s), "");
    EXPECT_EQ(Ask("SI\r\n", 70s), "S S     0.0000 g\r\n");
}

// Level 2: date and time, also as settings; the clock goes on.
TEST_F(MtSics, DAT_and_TIM_say_and_set_a_clock_that_goes_on) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("DAT\r\nTIM\r\n"), "DAT A 01 01 2026\r\nTIM A 08 00 00\r\n");
    EXPECT_EQ(Ask("DAT 28 02 2024\r\nTIM 23 59 58\r\n"), "DAT A\r\nTIM A\r\n");
    EXPECT_EQ(Ask("DAT\r\nTIM\r\n", 2s), "DAT A 29 02 2024\r\nTIM A 00 00 00\r\n");
    EXPECT_EQ(Ask("DAT 30 02 2024\r\nDAT 1 2\r\nTIM 24 00 00\r\nTIM x\r\nDAT\r\n", 2s),
              "DAT L\r\nDAT L\r\nTIM L\r\nTIM L\r\nDAT A 29 02 2024\r\n");
}

// Level 2: UPD, lines a second of SIR.
TEST_F(MtSics, UPD_sets_the_rate_of_SIR) {
    Have(1, {"model=xs204"});
    EXPECT_EQ(Ask("UPD\r\nUPD 2\r\nUPD\r\nSIR\r\n"),
              "UPD A 5\r\nUPD A\r\nUPD A 2\r\nS S     1.0000 g\r\n");
    EXPECT_EQ(AnswersUntil(499ms), "");
    EXPECT_EQ(AnswersUntil(500ms), "S S     1.0000 g\r\n");
    EXPECT_EQ(Ask("UPD 0\r\nUPD 21\r\nUPD fast\r\n", 500ms), "UPD L\r\nUPD L\r\nUPD L\r\n");
}

// Level 2: SIS: state, value, unit code, decimals, step, approval, tare (1 weighed, 2 entered).
TEST_F(MtSics, SIS_says_all_about_the_weight) {
    Have(100, {"model=xs204"});
    EXPECT_EQ(Ask("SIS\r\n"), "SIS A 0 100.0000 0 4 1 0 0\r\n");
    EXPECT_EQ(Ask("TA 1 g\r\nSIS\r\n"), "TA A     1.0000 g\r\nSIS A 0 99.0000 0 4 1 0 2\r\n");
    EXPECT_EQ(Ask("TI\r\nM21 0 3\r\nSIS\r\n"),
              "TI S   100.0000 g\r\nM21 A\r\nSIS A 0 0.0 3 1 1 0 1\r\n");
    PutOn(110);
    EXPECT_EQ(Ask("SIS\r\n", 100ms), "SIS A 1 4865.8 3 1 1 0 1\r\n");
    Have(221, {"model=xs204"});
    EXPECT_EQ(Ask("SIS\r\n").substr(0, 8), "SIS A 4 ");
    Have(-23, {"model=xs204"});
    EXPECT_EQ(Ask("SIS\r\n").substr(0, 8), "SIS A 5 ");
    AddFault("busy");
    EXPECT_EQ(Ask("SIS\r\n"), "SIS I\r\n");
}

TEST_F(MtSics, A_bridge_without_terminal_has_no_display) {
    Have(1, {"model=wxs205"});
    EXPECT_EQ(Ask("D \"HELLO\"\r\nDW\r\nSI\r\n"), "ES\r\nES\r\nS S    1.00000 g\r\n");
}

TEST_F(MtSics, Pieces_are_counted_in_whole_ones) {
    Have(12.4, {"unit=PCS"});
    EXPECT_EQ(Ask("S\r\nT\r\n"), "S S         12 PCS\r\nT S         12 PCS\r\n");
}

TEST_F(MtSics, Shows_its_own_decimals_at_its_own_settings) {
    Have(12.3456);
    EXPECT_EQ(Ask("S\r\n"), "S S      12.35 g\r\n");
    EXPECT_EQ(simulator::FindInstrument("mettler-toledo").line.Text(), "2400,7E1");
}

TEST_F(MtSics, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "S S      12.50 g\r\n");
}

TEST_F(MtSics, A_switch_of_the_balance_as_such_does_not_end_SIR_and_one_of_MT_SICS_does) {
    Have(12.5, {"repeat-interval=200ms"});
    EXPECT_EQ(Ask("SIR\r\n"), "S S      12.50 g\r\n");
    instrument_->Choose("unit=kg");
    EXPECT_EQ(AnswersUntil(250ms), "S S    0.01250 kg\r\n");
    instrument_->Choose("serial-number=7777777");
    EXPECT_EQ(AnswersUntil(1s), "");
    EXPECT_EQ(Ask("I4\r\n", 1s), "I4 A \"7777777\"\r\n");
}
