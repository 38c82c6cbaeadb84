#include "InstrumentTest.h"

using simulator::Key;
using namespace std::chrono_literals;

namespace {

class Ohaus : public InstrumentTest {
 protected:
    Ohaus() : InstrumentTest("ohaus") {}
};

TEST_F(Ohaus, Scout_Pro_prints_weight_unit_and_mark_in_their_columns) {
    Have(12.73);
    EXPECT_EQ(Ask("P\r\n"), "       12.73 g      \r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n"), "       12.73 g     ?\r\n");
}

TEST_F(Ohaus, Scout_Pro_may_print_the_mark_closer) {
    Have(12.73, {"line=scout-pro-close-mark"});
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n"), "       12.73 g    ?\r\n");
}

TEST_F(Ohaus, Scout_Pro_of_the_larger_ranges_prints_a_narrow_unit) {
    Have(311, {"line=scout-pro-narrow", "readability=1"});
    EXPECT_EQ(Ask("P\r\n"), "        311 g\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n"), "        311 g ?\r\n");
}

TEST_F(Ohaus, Explorer_prints_ten_columns) {
    Have(192.21, {"line=explorer"});
    EXPECT_EQ(Ask("P\r\n"), "    192.21 g\r\n");
    Have(0.01, {"line=explorer"});
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n"), "      0.01 g ?\r\n");
}

TEST_F(Ohaus, Explorer_Pro_prints_nine_columns_and_a_wide_unit) {
    Have(-12.21, {"line=explorer-pro"});
    EXPECT_EQ(Ask("P\r\n"), "   -12.21 g     \r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n"), "   -12.21 g    ?\r\n");
}

TEST_F(Ohaus, Numeric_only_leaves_the_unit_out) {
    Have(12.73, {"numeric-only"});
    EXPECT_EQ(Ask("P\r\n"), "       12.73        \r\n");
    Have(12.73, {"numeric-only", "line=explorer"});
    EXPECT_EQ(Ask("P\r\n"), "     12.73\r\n");
    Have(12.73, {"numeric-only", "line=explorer-pro"});
    EXPECT_EQ(Ask("P\r\n"), "    12.73 \r\n");
}

TEST_F(Ohaus, Commands_end_in_CR_with_or_without_LF) {
    Have(1, {"line=explorer"});
    EXPECT_EQ(Ask("P\r"), "      1.00 g\r\n");
    EXPECT_EQ(Ask("\nP\rP\r\n"), "      1.00 g\r\n      1.00 g\r\n");
}

TEST_F(Ohaus, SP_waits_until_the_pan_is_at_rest_and_P_does_not) {
    Have(0, {"line=explorer"});
    PutOn(50);
    EXPECT_EQ(Ask("P\r\n", 100ms), "     24.33 g ?\r\n");
    EXPECT_EQ(Ask("SP\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "     50.00 g\r\n");
}

TEST_F(Ohaus, P_waits_as_well_in_stable_only_mode) {
    Have(0, {"line=explorer", "stable-only"});
    PutOn(50);
    EXPECT_EQ(Ask("P\r\n", 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "     50.00 g\r\n");
    PutOn(60);
    EXPECT_EQ(Ask("0S\r\nP\r\n", 5100ms), "     54.87 g ?\r\n");
    EXPECT_EQ(Ask("1S\r\nP\r\n", 5150ms), "");
}

TEST_F(Ohaus, A_Scout_Pro_that_does_not_know_SP_stays_silent) {
    Have(1, {"stable-print=off"});
    EXPECT_EQ(Ask("SP\r\n"), "");
    EXPECT_EQ(AnswersUntil(60s), "");
    EXPECT_EQ(Ask("P\r\n", 60s), "        1.00 g      \r\n");
}

TEST_F(Ohaus, An_Explorer_that_never_comes_to_rest_says_ES_after_40_seconds) {
    Have(1, {"line=explorer"});
    AddFault("busy");
    EXPECT_EQ(Ask("SP\r\n"), "");
    EXPECT_EQ(AnswersUntil(39999ms), "");
    EXPECT_EQ(AnswersUntil(40000ms), "ES\r\n");
    Have(1);
    AddFault("busy");
    EXPECT_EQ(Ask("SP\r\n"), "");
    EXPECT_EQ(AnswersUntil(60s), "");
}

TEST_F(Ohaus, T_zeroes_near_zero_and_tares_elsewhere) {
    Have(5, {"line=explorer"});
    EXPECT_EQ(Ask("T\r\nP\r\n"), "      0.00 g\r\n");
    Have(50, {"line=explorer"});
    EXPECT_EQ(Ask("T\r\nP\r\n"), "      0.00 g\r\n");
}

TEST_F(Ohaus, Prints_unasked_until_0A) {
    Have(1, {"line=explorer"});
    EXPECT_EQ(Ask("2A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(4s), "      1.00 g\r\n      1.00 g\r\n");
    EXPECT_EQ(Ask("CA\r\n", 4s), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(4400ms), "      1.00 g\r\n      1.00 g\r\n");
    EXPECT_EQ(Ask("0A\r\n", 4400ms), "");
    EXPECT_EQ(AnswersUntil(60s), "");
}

TEST_F(Ohaus, Prints_at_once_while_SP_waits_for_the_pan) {
    Have(0, {"line=explorer"});
    PutOn(50);
    EXPECT_EQ(Ask("SP\r\nP\r\n", 100ms).size(), std::string("      0.00 g ?\r\n").size());
    EXPECT_EQ(AnswersUntil(5000ms), "     50.00 g\r\n");
}

TEST_F(Ohaus, Factory_settings_may_print_unasked_until_0A) {
    Have(1, {"line=explorer", "factory-auto-print"});
    EXPECT_EQ(Ask("\x1bR\r\n0A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(60s), "");
    EXPECT_EQ(Ask("\x1bR\r\n", 60s), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(60200ms), "      1.00 g\r\n");
}

TEST_F(Ohaus, Factory_settings_may_change_the_line_so_that_nothing_is_understood) {
    Have(1, {"line=explorer", "reset-changes-line", "factory-auto-print"});
    EXPECT_EQ(Ask("\x1bR\r\n0A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(200ms), "      1.00 g\r\n");
}

TEST_F(Ohaus, Unknown_commands_and_loads_out_of_range_print_nothing) {
    Have(1);
    EXPECT_EQ(Ask("X\r\n\r\nXA\r\n9999A\r\nP 1\r\n"), "");
    Have(610.01);
    EXPECT_EQ(Ask("P\r\nSP\r\n"), "");
}

TEST_F(Ohaus, Other_units_are_printed_as_such) {
    Have(1234, {"line=explorer", "unit=kg", "capacity=2000", "readability=1"});
    EXPECT_EQ(Ask("P\r\n"), "     1.234 kg\r\n");
    Have(28.35, {"line=explorer", "unit=oz"});
    EXPECT_EQ(Ask("P\r\n"), "    1.0000 oz\r\n");
}

// Explorer EX manual, tables 9-10: the commands are acknowledged with OK!, others are refused with
// ES.
TEST_F(Ohaus, An_Explorer_acknowledges_what_it_sets_and_refuses_what_it_does_not_know) {
    Have(5, {"series=explorer"});
    EXPECT_EQ(Ask("0P\r\n2U\r\n1M\r\n0M\r\nON\r\n"), "OK!\r\nOK!\r\nOK!\r\nOK!\r\nOK!\r\n");
    EXPECT_EQ(Ask("X\r\n0A\r\n99U\r\n7M\r\nxT\r\n3601P\r\nP 1\r\n2\r\n"),
              "ES\r\nES\r\nES\r\nES\r\nES\r\nES\r\nES\r\nES\r\n");
}

// Scout Pro kit EN-3 and Discovery service manual, table 4-3: no acknowledgement.
TEST_F(Ohaus, A_Discovery_acknowledges_nothing_and_refuses_what_it_does_not_know) {
    Have(50, {"series=discovery"});
    EXPECT_EQ(Ask("T\r\nIP\r\n"), "      0.00 g\r\n");
    EXPECT_EQ(Ask("0P\r\n2U\r\n0FMT\r\n"), "ES\r\nES\r\n");
    EXPECT_EQ(Ask("12.5T\r\nIP\r\n0T\r\nIP\r\n"), "     37.50 g\r\n     50.00 g\r\n");
}

// Explorer EX manual: T and Z; with readings of an EX225D: OK! at once, ES for an empty pan.
TEST_F(Ohaus, T_and_Z_are_acknowledged_at_once_and_done_when_the_pan_rests) {
    Have(50, {"series=explorer"});
    EXPECT_EQ(Ask("T\r\nIP\r\n"), "OK!\r\n      0.00 g\r\n");
    EXPECT_EQ(Ask("Z\r\n"), "ES\r\n");
    Have(5, {"series=explorer"});
    EXPECT_EQ(Ask("Z\r\nIP\r\nT\r\n"), "OK!\r\n      0.00 g\r\nES\r\n");
    PutOn(30);
    EXPECT_EQ(Ask("T\r\n", 100ms), "OK!\r\n");
    EXPECT_EQ(Ask("IP\r\n", 5s), "      0.00 g\r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 25);
}

TEST_F(Ohaus, IP_prints_at_once_and_P_waits_40_seconds_for_a_stable_weight_when_set_so) {
    Have(0, {"series=explorer", "stable-only"});
    PutOn(50);
    EXPECT_EQ(Ask("IP\r\n", 100ms), "     24.33 g ?\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("P\r\n", 200ms), "");
    EXPECT_EQ(AnswersUntil(40199ms), "");
    EXPECT_EQ(AnswersUntil(40200ms), "ES\r\n");
}

// Explorer EX manual: xT presets a tare in the unit that is shown, 0T clears it, PT says it.
TEST_F(Ohaus, A_preset_tare_is_in_the_unit_that_is_shown) {
    Have(50, {"series=explorer"});
    EXPECT_EQ(Ask("12.5T\r\nIP\r\nPT\r\n"), "OK!\r\n     37.50 g\r\n     12.50 g\r\n");
    EXPECT_EQ(Ask("0T\r\nIP\r\n"), "OK!\r\n     50.00 g\r\n");
    EXPECT_EQ(Ask("2U\r\n0.02T\r\nIP\r\n"), "OK!\r\nOK!\r\n   0.03000 kg\r\n");
    EXPECT_EQ(Ask("611T\r\nIP\r\n"), "ES\r\n   0.03000 kg\r\n");
}

// Explorer EX manual: xU chooses the unit: 0 mg, 1 g, 2 kg, 3 ct, 4 oz, 5 ozt, 6 lb, 7 dwt, 8
// grain, 9 newton.
TEST_F(Ohaus, XU_chooses_the_unit_and_U_the_next_one) {
    Have(50, {"series=explorer"});
    EXPECT_EQ(Ask("0U\r\nIP\r\nPU\r\n"), "OK!\r\n     50000 mg\r\nmg\r\n");
    EXPECT_EQ(Ask("1U\r\nIP\r\n"), "OK!\r\n     50.00 g\r\n");
    EXPECT_EQ(Ask("2U\r\nIP\r\n"), "OK!\r\n   0.05000 kg\r\n");
    EXPECT_EQ(Ask("3U\r\nIP\r\n"), "OK!\r\n    250.00 ct\r\n");
    EXPECT_EQ(Ask("4U\r\nIP\r\n"), "OK!\r\n    1.7637 oz\r\n");
    EXPECT_EQ(Ask("5U\r\nIP\r\n"), "OK!\r\n    1.6075 ozt\r\n");
    EXPECT_EQ(Ask("6U\r\nIP\r\n"), "OK!\r\n   0.11023 lb\r\n");
    EXPECT_EQ(Ask("7U\r\nIP\r\n"), "OK!\r\n    32.151 dwt\r\n");
    EXPECT_EQ(Ask("8U\r\nIP\r\n"), "OK!\r\n     771.6 GN\r\n");
    EXPECT_EQ(Ask("9U\r\nIP\r\n"), "OK!\r\n   0.49033 N\r\n");
    EXPECT_EQ(Ask("U\r\nPU\r\nU\r\nPU\r\n"), "OK!\r\nmg\r\nOK!\r\ng\r\n");
}

// Explorer EX manual: 0M weighing, 1M counting, M the next mode, PM says it.
TEST_F(Ohaus, XM_chooses_weighing_or_counting) {
    Have(12.4, {"series=explorer"});
    EXPECT_EQ(Ask("PM\r\n1M\r\nPM\r\nIP\r\n"), "Weighing\r\nOK!\r\nCounting\r\n        12 PCS\r\n");
    EXPECT_EQ(Ask("M\r\nIP\r\nM\r\nIP\r\n0M\r\nIP\r\n"),
              "OK!\r\n     12.40 g\r\nOK!\r\n        12 PCS\r\nOK!\r\n     12.40 g\r\n");
}

// Read from a new Scout: 1M is weighing, xU the unit; 0FMT is acknowledged.
TEST_F(Ohaus, A_new_Scout_acknowledges_and_prints_a_line_of_its_own) {
    Have(12.4, {"series=scout"});
    EXPECT_EQ(Ask("1M\r\n1U\r\n0P\r\n0FMT\r\nIP\r\n"),
              "OK!\r\nOK!\r\nOK!\r\nOK!\r\n     12.40 g  \r\n");
    EXPECT_EQ(Ask("T\r\nIP\r\n"), "OK!\r\n      0.00 g   N\r\n");
    PutOn(30);
    EXPECT_EQ(Ask("IP\r\n", 100ms), "      8.56 g ? N\r\n");
    EXPECT_EQ(Ask("CP\r\n5P\r\nSP\r\nPM\r\n1T\r\n1FMT\r\n", 5s),
              "ES\r\nES\r\nES\r\nES\r\nES\r\nES\r\n");
    EXPECT_EQ(Ask("M\r\n2U\r\nIP\r\n", 5s), "OK!\r\nOK!\r\n   0.01760 kg   N\r\n");
}

// Scout Pro kit EN-3: xM chooses the unit: 0 g, 1 oz, 2 ozt, 3 dwt, 4 count, 5 lb; no answer.
TEST_F(Ohaus, XM_chooses_the_unit_of_a_Scout_Pro) {
    Have(50);
    EXPECT_EQ(Ask("1M\r\nP\r\n"), "      1.7637 oz     \r\n");
    EXPECT_EQ(Ask("4M\r\nP\r\n"), "          50 PCS    \r\n");
    EXPECT_EQ(Ask("6M\r\n0M\r\nP\r\n"), "       50.00 g      \r\n");
}

// Scout Pro kit EN-3 and AS table: V, "?", LE.
TEST_F(Ohaus, A_Scout_Pro_says_version_stability_and_last_error) {
    Have(50, {"software=1.12"});
    EXPECT_EQ(Ask("V\r\n?\r\nLE\r\n"), "1.12\r\ng      \r\n[Err 0]\r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("?\r\n"), "g     ?\r\n");
}

// Explorer EX manual: PSN serial number, PV versions; V is as PV.
TEST_F(Ohaus, An_Explorer_says_serial_number_and_version) {
    Have(50, {"series=explorer", "serial-number=B7", "software=2.03"});
    EXPECT_EQ(Ask("PSN\r\nPV\r\nV\r\n"), "B7\r\n2.03\r\n2.03\r\n");
}

// Explorer EX manual: CP prints all the time, xP every x seconds, 0P ends both.
TEST_F(Ohaus, CP_and_xP_print_until_0P) {
    Have(1, {"series=explorer"});
    EXPECT_EQ(Ask("2P\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(4s), "      1.00 g\r\n      1.00 g\r\n");
    EXPECT_EQ(Ask("CP\r\n", 4s), "      1.00 g\r\n");
    EXPECT_EQ(AnswersUntil(4200ms), "      1.00 g\r\n");
    EXPECT_EQ(Ask("0P\r\n", 4200ms), "OK!\r\n");
    EXPECT_EQ(AnswersUntil(60s), "");
}

// Explorer EX manual: SLP prints each new stable load, SLZP zero as well. Scout Pro: SA.
TEST_F(Ohaus, SLP_prints_each_new_stable_load_and_SLZP_zero_too) {
    Have(1, {"series=explorer"});
    EXPECT_EQ(Ask("SLP\r\n"), "      1.00 g\r\n");
    PutOn(20);
    EXPECT_EQ(AnswersUntil(5s), "     20.00 g\r\n");
    PutOn(0);
    EXPECT_EQ(AnswersUntil(10s), "");
    EXPECT_EQ(Ask("SLZP\r\n", 10s), "      0.00 g\r\n");
    PutOn(20);
    AnswersUntil(15s);
    PutOn(0);
    EXPECT_EQ(AnswersUntil(20s), "      0.00 g\r\n");
    EXPECT_EQ(Ask("0P\r\n", 20s), "OK!\r\n");
    Have(1, {"line=explorer"});
    EXPECT_EQ(Ask("SA\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(Ask("0A\r\n"), "");
}

// Adventurer service manual, table 1-6, and a new Scout: ES while the balance wakes up.
TEST_F(Ohaus, Switched_off_it_says_ES_until_it_is_awake_again) {
    Have(1, {"series=scout"});
    EXPECT_EQ(Ask("OFF\r\nIP\r\n1M\r\n"), "OK!\r\nES\r\nES\r\n");
    EXPECT_EQ(Ask("ON\r\n1M\r\n", 1s), "OK!\r\nES\r\n");
    EXPECT_EQ(Ask("1M\r\n", 2999ms), "ES\r\n");
    EXPECT_EQ(Ask("1M\r\nIP\r\n", 3s), "OK!\r\n      1.00 g  \r\n");
}

// Explorer EX with doors: WI and two numbers, WI A.
TEST_F(Ohaus, An_Explorer_moves_its_doors) {
    Have(50, {"series=explorer"});
    EXPECT_EQ(Ask("WI 1 0\r\nWI 0 0\r\nWI\r\nWI 1\r\nWI a b\r\nIP\r\n"),
              "WI A\r\nWI A\r\nES\r\nES\r\nES\r\n     50.00 g\r\n");
}

// A program that reads such a balance takes these lines for weights out of range.
TEST_F(Ohaus, A_new_Scout_prints_words_out_of_range) {
    Have(610.01, {"series=scout"});
    EXPECT_EQ(Ask("IP\r\n"), "OVER LOAD\r\n");
    Have(-61.01, {"series=scout"});
    EXPECT_EQ(Ask("IP\r\n"), "UNDER LOAD\r\n");
}

// Adventurer AX service manual, table 1-6.
TEST_F(Ohaus, An_Adventurer_has_the_newer_set_without_modes_and_units) {
    Have(50, {"series=adventurer", "serial-number=B7", "software=2.03"});
    EXPECT_EQ(Ask("IP\r\nPSN\r\nPV\r\nV\r\nSP\r\n"),
              "     50.00 g\r\nB7\r\n2.03\r\n2.03\r\n     50.00 g\r\n");
    EXPECT_EQ(Ask("PM\r\nPU\r\nPT\r\n1M\r\n2U\r\n0A\r\nLE\r\n"),
              "ES\r\nES\r\nES\r\nES\r\nES\r\nES\r\nES\r\n");
    EXPECT_EQ(Ask("12.5T\r\nIP\r\n0T\r\nT\r\nIP\r\n"),
              "OK!\r\n     37.50 g\r\nOK!\r\nOK!\r\n      0.00 g\r\n");
    Have(50, {"series=adventurer", "unit=kg"});
    EXPECT_EQ(Ask("0.02T\r\nIP\r\n"), "OK!\r\n   0.03000 kg\r\n");
}

TEST_F(Ohaus, RL_switches_the_OK_of_an_Adventurer_off_and_on) {
    Have(50, {"series=adventurer"});
    EXPECT_EQ(Ask("0RL\r\n0P\r\nT\r\nIP\r\n"), "      0.00 g\r\n");
    EXPECT_EQ(Ask("Z\r\n2RL\r\n1RL\r\n0P\r\n"), "ES\r\nES\r\nOK!\r\nOK!\r\n");
}

// Adventurer AX service manual, table 1-6: 0S as IP, 1S as SP.
TEST_F(Ohaus, An_Adventurer_prints_stable_weights_only_after_1S) {
    Have(0, {"series=adventurer"});
    PutOn(50);
    EXPECT_EQ(Ask("1S\r\nP\r\n", 100ms), "OK!\r\n");
    EXPECT_EQ(AnswersUntil(5s), "     50.00 g\r\n");
    PutOn(60);
    EXPECT_EQ(Ask("0S\r\nP\r\n", 5100ms), "OK!\r\n     54.87 g ?\r\n");
}

TEST_F(Ohaus, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "       12.50 g      \r\n");
}

}  // namespace
