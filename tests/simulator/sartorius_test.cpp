#include <map>

#include "InstrumentTest.h"

using simulator::Key;
using namespace std::chrono_literals;

namespace {

const std::string kPrint = "\x1bP\r\n";
const std::string kTare = "\x1bT\r\n";

class Sartorius : public InstrumentTest {
 protected:
    Sartorius() : InstrumentTest("sartorius") {}
};

TEST_F(Sartorius, Prints_a_line_of_16_characters) {
    Have(123.56);
    EXPECT_EQ(Ask(kPrint), "+   123.56 g  \r\n");
    Have(-12.34);
    EXPECT_EQ(Ask(kPrint), "-    12.34 g  \r\n");
    Have(0);
    EXPECT_EQ(Ask(kPrint), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Prints_a_line_of_22_characters_with_an_identifier) {
    Have(123.56, {"line=22"});
    EXPECT_EQ(Ask(kPrint), "N     +   123.56 g  \r\n");
}

TEST_F(Sartorius, A_command_needs_no_line_end) {
    Have(1);
    EXPECT_EQ(Ask("\x1bP"), "+     1.00 g  \r\n");
    EXPECT_EQ(Ask("\x1bP\x1bP"), "+     1.00 g  \r\n+     1.00 g  \r\n");
}

TEST_F(Sartorius, A_command_may_come_in_pieces) {
    Have(0);
    EXPECT_EQ(Ask("\x1b"), "");
    EXPECT_EQ(Ask("t5"), "");
    EXPECT_EQ(Ask(".00"), "");
    EXPECT_EQ(Ask("_\r\n\x1bkF4_\r"), "");
    EXPECT_EQ(Ask("\n\x1bP"), "-     5.00 g  \r\n");
}

TEST_F(Sartorius, Unknown_commands_and_stray_characters_get_no_answer) {
    Have(1);
    EXPECT_EQ(Ask("P\r\nS\r\n\x1bQ\r\n\x1bx9_\r\n"), "");
    EXPECT_EQ(Ask(kPrint), "+     1.00 g  \r\n");
}

TEST_F(Sartorius, As_delivered_prints_only_at_rest) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask(kPrint, 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "+    50.00 g  \r\n");
}

TEST_F(Sartorius, Prints_a_moving_pan_without_its_unit_when_set_to_print_at_once) {
    Have(0, {"print=at-once"});
    PutOn(50);
    EXPECT_EQ(Ask(kPrint, 100ms), "+    24.33    \r\n");
}

TEST_F(Sartorius, Prints_nothing_for_a_moving_pan_when_set_so) {
    Have(0, {"print=stable-or-nothing"});
    PutOn(50);
    EXPECT_EQ(Ask(kPrint, 100ms), "");
    EXPECT_EQ(AnswersUntil(5000ms), "");
    EXPECT_EQ(Ask(kPrint, 5000ms), "+    50.00 g  \r\n");
}

TEST_F(Sartorius, Waits_for_a_busy_balance_until_the_wait_is_cancelled) {
    Have(1);
    AddFault("busy");
    EXPECT_EQ(Ask(kPrint), "");
    EXPECT_EQ(AnswersUntil(3600s), "");
    EXPECT_EQ(Ask("\x1bs3_\r\n", 3600s), "");
    instrument_->ClearFaults();
    EXPECT_EQ(AnswersUntil(7200s), "");
}

TEST_F(Sartorius, Overload_and_underload_are_letters_or_words) {
    Have(610.01);
    EXPECT_EQ(Ask(kPrint), "      H       \r\n");
    Have(-61.01);
    EXPECT_EQ(Ask(kPrint), "      L       \r\n");
    Have(610.01, {"line=22"});
    EXPECT_EQ(Ask(kPrint), "Stat        H       \r\n");
    Have(610.01, {"line=22", "words"});
    EXPECT_EQ(Ask(kPrint), "Stat        High    \r\n");
    Have(-61.01, {"line=22", "words"});
    EXPECT_EQ(Ask(kPrint), "Stat        Low     \r\n");
}

TEST_F(Sartorius, Shows_other_things_than_a_weight) {
    Have(1, {"display=blank"});
    EXPECT_EQ(Ask(kPrint), "              \r\n");
    Have(1, {"display=calibration"});
    EXPECT_EQ(Ask(kPrint), "      C       \r\n");
    Have(1, {"display=final"});
    EXPECT_EQ(Ask(kPrint), "      --      \r\n");
    Have(1, {"display=error"});
    EXPECT_EQ(Ask(kPrint), "   Err  54    \r\n");
    Have(1, {"display=error-054"});
    EXPECT_EQ(Ask(kPrint), "   Err 054    \r\n");
    Have(1, {"display=external-calibration"});
    EXPECT_EQ(Ask(kPrint), "   Cal. Ext.  \r\n");
    Have(1, {"display=error", "line=22"});
    EXPECT_EQ(Ask(kPrint), "Stat     Err  54    \r\n");
    Have(1, {"display=standby", "line=22"});
    EXPECT_EQ(Ask(kPrint), "Stat       OFF      \r\n");
}

TEST_F(Sartorius, A_verified_balance_brackets_its_last_digit) {
    Have(123.56, {"verified"});
    EXPECT_EQ(Ask(kPrint), "+ 123.5[6] g  \r\n");
}

TEST_F(Sartorius, A_ninth_digit_stands_in_position_1) {
    Have(0.11125507, {"unit=mg", "readability=0.00000001"});
    EXPECT_EQ(Ask(kPrint), "+111.25507 mg \r\n");
}

TEST_F(Sartorius, Tare_zeroes_near_zero_and_tares_elsewhere) {
    Have(5);
    EXPECT_EQ(Ask(kTare + kPrint), "+     0.00 g  \r\n");
    Have(50);
    EXPECT_EQ(Ask(kTare + kPrint), "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 50);
}

TEST_F(Sartorius, Zero_and_tare_have_commands_of_their_own) {
    Have(5);
    EXPECT_EQ(Ask("\x1b"
                  "f4_" +
                  kPrint),
              "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 5);
    EXPECT_EQ(Ask("\x1b"
                  "f3_" +
                  kPrint),
              "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 0);
}

TEST_F(Sartorius, A_typed_text_becomes_the_tare_by_soft_key_4) {
    Have(0, {"line=22"});
    EXPECT_EQ(Ask("\x1bt5.00_\r\n"), "");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "5.00");
    EXPECT_EQ(Ask("\x1bkF4_\r\n" + kPrint), "N1    -     5.00 g  \r\n");
    EXPECT_EQ(Ask(kTare + kPrint), "N     +     0.00 g  \r\n");
}

TEST_F(Sartorius, A_stored_tare_is_added_to_the_container) {
    Have(50);
    EXPECT_EQ(Ask(kTare + "\x1bt5.00_\x1bkF4_" + kPrint), "-     5.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 55);
}

TEST_F(Sartorius, A_stored_tare_may_have_a_line_of_its_own) {
    Have(0, {"line=22", "tare-line=TP1"});
    EXPECT_EQ(Ask("\x1bt5.00_\x1bkF4_" + kPrint),
              "TP1   +     5.00 g  \r\nN1    -     5.00 g  \r\n");
    Have(0, {"line=22", "tare-line=T1"});
    EXPECT_EQ(Ask("\x1bt5.00_\x1bkF4_" + kPrint),
              "T1    +     5.00 g  \r\nN1    -     5.00 g  \r\n");
}

TEST_F(Sartorius, Soft_key_4_does_nothing_in_another_application_or_without_a_number) {
    Have(0, {"store-key=off"});
    EXPECT_EQ(Ask("\x1bt5.00_\x1bkF4_" + kPrint), "+     0.00 g  \r\n");
    Have(0);
    EXPECT_EQ(Ask("\x1btlot 7_\x1bkF4_" + kPrint), "+     0.00 g  \r\n");
    EXPECT_EQ(Ask("\x1bt999_\x1bkF4_" + kPrint), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Cancel_forgets_what_was_typed) {
    Have(0);
    EXPECT_EQ(Ask("\x1bt5.00_\x1bs3_\x1bkF4_" + kPrint), "+     0.00 g  \r\n");
}

TEST_F(Sartorius, Prints_ten_lines_a_second_unasked_from_the_switching_on_when_set_so) {
    Have(1, {"auto-print"});
    AnswersUntil(0ms);  // the line of the switching on
    EXPECT_EQ(AnswersUntil(200ms), "+     1.00 g  \r\n+     1.00 g  \r\n");
}

/// Sends ESC and a command. Apart from the digits behind it ESC is a character of its own.
std::string Esc(const std::string& command) {
    return "\x1b" + command + "\r\n";
}

// Manuals of LA p. 120, ME215 p. 143, LE p. 54: x1_ model, x2_ serial number, x3_ software. The
// MSE's line of 20 characters and the Entris' word in front were read from such balances.
TEST_F(Sartorius, Says_its_model_serial_number_and_software) {
    Have(1, {"series=mse", "line=22"});
    EXPECT_EQ(Ask(Esc("x1_") + Esc("x2_") + Esc("x3_")),
              "MSE1203S-100-DR     \r\n37454321            \r\n00-37-09            \r\n");
    Have(1, {"series=entris2", "line=22"});
    EXPECT_EQ(Ask(Esc("x1_")), "Model  BCE124I-1CEU \r\n");
    Have(1, {"series=mse"});
    EXPECT_EQ(Ask(Esc("x1_") + Esc("x2_")), "MSE1203S-100-D\r\n37454321      \r\n");
    Have(1, {"serial-number=12809099", "software=00-39-21"});
    EXPECT_EQ(Ask(Esc("x1_") + Esc("x2_") + Esc("x3_")),
              "LA620S        \r\n12809099      \r\n00-39-21      \r\n");
}

TEST_F(Sartorius, Each_series_has_a_model_of_its_own) {
    const std::map<std::string, std::string> models = {
        {"la", "LA620S        \r\n"},      {"cp", "CP622S        \r\n"},
        {"extend", "ED623S        \r\n"},  {"mse", "MSE1203S-100-D\r\n"},
        {"entris2", "Model  BCE124I\r\n"}, {"quintix", "QUINTIX612-1S \r\n"},
        {"cubis2", "MCA5201S      \r\n"},  {"combics", "CW2P1U-6DC    \r\n"},
        {"pma", "PMA7501-X00V1 \r\n"}};
    for (const auto& [series, model] : models) {
        Have(1, {"series=" + series});
        EXPECT_EQ(Ask(Esc("x1_")), model) << series;
    }
}

// CP p. 60 and LE p. 54 have no x3_.
TEST_F(Sartorius, A_CP_does_not_say_its_software) {
    Have(1, {"series=cp"});
    EXPECT_EQ(Ask(Esc("x3_") + kPrint), "+     1.00 g  \r\n");
}

TEST_F(Sartorius, Says_its_model_while_it_waits_for_the_pan) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask(kPrint + Esc("x2_"), 100ms), "37454321      \r\n");
    EXPECT_EQ(AnswersUntil(5s), "+    50.00 g  \r\n");
}

// Entris II note p. 4 and measurements at an MSE: U tares, V zeroes. LA p. 120 has f4_ and f3_.
TEST_F(Sartorius, Tares_and_zeroes_apart_with_the_commands_of_its_series) {
    const auto tareAfter = [&](const std::string& series, const std::string& commands) {
        Have(5, {"series=" + series});
        EXPECT_EQ(Ask(commands), "");
        return instrument_->Balance().TareWeight();
    };
    for (const char* series : {"mse", "entris2", "quintix"}) {
        EXPECT_EQ(tareAfter(series, Esc("U")), 5) << series;
        EXPECT_EQ(tareAfter(series, Esc("U") + Esc("V")), 0) << series;
        EXPECT_EQ(Ask(kPrint).substr(1, 9), "     0.00") << series;
    }
    for (const char* series : {"la", "entris2"}) {
        EXPECT_EQ(tareAfter(series, Esc("f4_")), 5) << series;
        EXPECT_EQ(tareAfter(series, Esc("f4_") + Esc("f3_")), 0) << series;
    }
    for (const char* series : {"la", "cp", "extend", "cubis2"})
        EXPECT_EQ(tareAfter(series, Esc("U")), 0) << series;
    for (const char* series : {"cp", "extend", "mse", "quintix", "cubis2"})
        EXPECT_EQ(tareAfter(series, Esc("f4_")), 0) << series;
}

// LA p. 120: K very stable, L stable, M unstable, N very unstable place.
TEST_F(Sartorius, The_filter_sets_how_fast_the_weight_follows_the_load) {
    const auto shownAfter = [&](const std::string& command) {
        Have(0, {"print=at-once"});
        EXPECT_EQ(Ask(Esc(command)), "");
        PutOn(50);
        return Ask(kPrint, 100ms);
    };
    EXPECT_EQ(shownAfter("K"), "+     7.68    \r\n");
    EXPECT_EQ(shownAfter("L"), "+    24.33    \r\n");
    EXPECT_EQ(shownAfter("M"), "+    36.82    \r\n");
    EXPECT_EQ(shownAfter("N"), "+    46.53    \r\n");
}

// LA p. 120: O blocks the keys, R frees them.
TEST_F(Sartorius, Blocked_keys_do_nothing) {
    Have(5);
    const auto tareKey = [&] {
        instrument_->Press(simulator::Key::Tare);
        instrument_->Press(simulator::Key::Print);
        return instrument_->TakeOutput();
    };
    EXPECT_EQ(Ask(Esc("O")), "");
    EXPECT_EQ(tareKey(), "");
    EXPECT_EQ(Ask(kPrint), "+     5.00 g  \r\n");
    EXPECT_EQ(Ask(Esc("R")), "");
    EXPECT_EQ(tareKey(), "+     0.00 g  \r\n");
}

// LA p. 120, Extend p. 47: x0_ and Z adjust with the built-in weight, W as the menu says; f1_ is
// the CAL key.
TEST_F(Sartorius, Shows_C_while_it_adjusts) {
    for (const std::string command : {"x0_", "Z", "W", "f1_"}) {
        Have(5, {"adjustment-time=3s"});
        EXPECT_EQ(Ask(Esc(command) + kPrint), "      C       \r\n") << command;
        EXPECT_EQ(Ask(kPrint, 2999ms), "      C       \r\n") << command;
        EXPECT_EQ(Ask(kPrint, 3000ms), "+     5.00 g  \r\n") << command;
    }
    Have(5, {"words", "line=22"});
    EXPECT_EQ(Ask(Esc("Z") + kPrint), "Stat        Cal.    \r\n");
}

// LA p. 120: S restarts; a Cubis II does not know it.
TEST_F(Sartorius, A_restart_forgets_the_tare_and_zeroes_near_zero) {
    Have(5, {"series=mse"});
    EXPECT_EQ(Ask(Esc("U") + Esc("S")), "");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 0);
    EXPECT_EQ(Ask(kPrint), "      0.00 g  \r\n");
    Have(5, {"series=cubis2"});
    EXPECT_EQ(Ask(Esc("S") + kPrint), "+     5.00 g  \r\n");
}

// Measurements at an MSE: p_; Entris II note p. 4 and Combics p. 103: kP_.
TEST_F(Sartorius, Prints_on_every_interface_with_the_command_of_its_series) {
    Have(5, {"series=mse"});
    EXPECT_EQ(Ask(Esc("p_") + Esc("kP_")), "+     5.00 g  \r\n");
    Have(5, {"series=entris2"});
    EXPECT_EQ(Ask(Esc("kP_") + Esc("p_")), "+     5.00 g  \r\n");
}

// CP p. 59: with automatic print on, ESC P is the print key that stops and starts it.
TEST_F(Sartorius, ESC_P_stops_and_starts_what_a_CP_prints_unasked) {
    Have(1, {"series=cp", "auto-print"});
    AnswersUntil(0ms);
    EXPECT_EQ(Ask(kPrint, 50ms), "");
    EXPECT_EQ(AnswersUntil(1s), "");
    EXPECT_EQ(Ask(kPrint, 1s), "+     1.00 g  \r\n");
    EXPECT_EQ(AnswersUntil(1200ms), "+     1.00 g  \r\n+     1.00 g  \r\n");
    EXPECT_EQ(Ask(Esc("x2_"), 1250ms), "37454321      \r\n");
}

// Measured at an MSE: one line, then nothing until T, V or a key; V sends a line of its own.
TEST_F(Sartorius, ESC_P_ends_what_an_MSE_prints_unasked_until_it_is_tared_or_zeroed) {
    Have(100, {"series=mse", "auto-print", "line=22"});
    AnswersUntil(0ms);
    EXPECT_EQ(Ask(kPrint, 50ms), "N     +   100.00 g  \r\n");
    EXPECT_EQ(AnswersUntil(1s), "");
    EXPECT_EQ(Ask(Esc("T"), 1s), "N           0.00 g  \r\n");
    EXPECT_EQ(AnswersUntil(1100ms), "N           0.00 g  \r\n");
    Have(5, {"series=mse", "auto-print", "line=22"});
    AnswersUntil(0ms);
    EXPECT_EQ(Ask(Esc("V"), 50ms), "Stat                \r\nN           0.00 g  \r\n");
    EXPECT_EQ(Ask(kPrint, 60ms), "N           0.00 g  \r\n");
    instrument_->Press(simulator::Key::Print);
    EXPECT_EQ(AnswersUntil(160ms), "N           0.00 g  \r\nN           0.00 g  \r\n");
}

TEST_F(Sartorius, In_the_LA_series_ESC_P_prints_between_what_comes_unasked) {
    Have(1, {"auto-print"});
    AnswersUntil(0ms);
    EXPECT_EQ(Ask(kPrint, 50ms), "+     1.00 g  \r\n");
    EXPECT_EQ(AnswersUntil(100ms), "+     1.00 g  \r\n");
}

// Read from a Cubis II MCA5201S: gross is G, zero has no sign, a moving value comes at once.
TEST_F(Sartorius, A_Cubis_II_does_not_wait_and_calls_gross_G) {
    Have(0, {"series=cubis2", "line=22"});
    EXPECT_EQ(Ask(kPrint), "G           0.00 g  \r\n");
    PutOn(50);
    EXPECT_EQ(Ask(kPrint, 100ms), "G     +    24.33    \r\n");
    EXPECT_EQ(Ask(Esc("T") + kPrint, 5s), "N           0.00 g  \r\n");
}

// Read from a Quintix: a blank line behind what was printed.
TEST_F(Sartorius, A_Quintix_ends_a_print_with_a_blank_line) {
    Have(5, {"series=quintix"});
    EXPECT_EQ(Ask(kPrint), "+     5.00 g  \r\n\r\n");
}

// Extend p. 47, Entris II note p. 4: ESC may be left out.
TEST_F(Sartorius, An_Extend_takes_commands_without_ESC) {
    Have(1, {"series=extend"});
    EXPECT_EQ(Ask("P\r\nx2_\r\n\x1bP\r\n"),
              "+     1.00 g  \r\n37454321      \r\n+     1.00 g  \r\n");
}

// Combics p. 103: Qnt is a count of pieces.
TEST_F(Sartorius, Pieces_are_counted_in_whole_ones) {
    Have(12.4, {"unit=PCS", "line=22"});
    EXPECT_EQ(Ask(kPrint), "Qnt   +       12 pcs\r\n");
    Have(12.4, {"unit=PCS"});
    EXPECT_EQ(Ask(kPrint), "+       12 pcs\r\n");
}

// Combics p. 103: i_ type, software and platform; kZE_ zeroes, kT_ tares, kP_ prints.
TEST_F(Sartorius, A_Combics_says_its_platform_and_has_keys_by_name) {
    Have(50, {"series=combics"});
    EXPECT_EQ(Ask(Esc("i_")), "C2/016202/1\r\n");
    EXPECT_EQ(Ask(Esc("kT_") + Esc("kP_")), "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 50);
    Have(5, {"series=combics"});
    EXPECT_EQ(Ask(Esc("kZE_") + kPrint), "+     0.00 g  \r\n");
    EXPECT_EQ(instrument_->Balance().TareWeight(), 0);
    EXPECT_EQ(Ask(Esc("f4_") + Esc("U") + Esc("x3_")), "00-37-09      \r\n");
    Have(5);
    EXPECT_EQ(Ask(Esc("i_") + Esc("kT_") + Esc("kP_") + kPrint), "+     5.00 g  \r\n");
}

// Read from a PMA7501: x8_ is the last key, 000 none, 051 tare; a3 shows a text.
TEST_F(Sartorius, A_PMA_says_its_last_key_and_shows_a_text) {
    Have(50, {"series=pma"});
    EXPECT_EQ(Ask(Esc("x8_")), "        000   \r\n");
    Press(Key::Tare);
    EXPECT_EQ(Ask(Esc("x8_")), "        051   \r\n");
    EXPECT_EQ(Ask(Esc("a3READY_")), "");
    EXPECT_EQ(instrument_->Balance().DisplayText(), "READY");
    EXPECT_EQ(Ask(Esc("f4_") + Esc("t7_") + Esc("x8_")), "        051   \r\n");
}

// Combics p. 103 and an Entris II: "!" marks a value that is not verified.
TEST_F(Sartorius, A_value_that_is_not_verified_has_an_exclamation_mark_for_its_unit) {
    Have(0.0006, {"line=22", "readability=0.0001", "series=cubis2", "unverified"});
    EXPECT_EQ(Ask(kPrint), "G     +   0.0006 !  \r\n");
}

// The unit that somebody sets at the menu is that of every line.
TEST_F(Sartorius, Every_line_has_the_unit_that_is_set_at_the_menu) {
    Have(50, {"unit=mg", "line=22", "tare-line=TP1"});
    EXPECT_EQ(Ask(kTare + "\x1bt5000_\x1bkF4_" + kPrint),
              "TP1   +     5000 mg \r\nN1    -     5000 mg \r\n");
    EXPECT_EQ(Press(Key::Print), "TP1   +     5000 mg \r\nN1    -     5000 mg \r\n");
}

TEST_F(Sartorius, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "+    12.50 g  \r\n");
}

}  // namespace
