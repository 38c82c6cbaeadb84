#include "InstrumentTest.h"

using simulator::Fault;
using simulator::Instrument;
using simulator::Key;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

class Radwag : public InstrumentTest {
 protected:
    Radwag() : InstrumentTest("radwag") {}
};

}  // namespace

TEST_F(Radwag, S_confirms_and_sends_a_frame_of_21_bytes) {
    Have(12.34);
    EXPECT_EQ(Ask("S\r\n"), "S A\r\nS         12.34 g  \r\n");
}

TEST_F(Radwag, The_minus_sign_stands_apart_from_the_mass) {
    Have(-8.5);
    EXPECT_EQ(Ask("S\r\n"), "S A\r\nS    -     8.50 g  \r\n");
}

TEST_F(Radwag, Some_models_send_frames_of_22_bytes) {
    Have(-8.5, {"frame=22"});
    EXPECT_EQ(Ask("SI\r\n"), "SI    -     8.50 g  \r\n");
}

TEST_F(Radwag, S_waits_until_the_pan_is_at_rest) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\n", 100ms), "S A\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "S         50.00 g  \r\n");
}

TEST_F(Radwag, SI_sends_a_frame_at_once_and_marks_a_moving_pan) {
    Have(0);
    EXPECT_EQ(Ask("SI\r\n"), "SI         0.00 g  \r\n");
    PutOn(50);
    EXPECT_EQ(Ask("SI\r\n", 100ms), "SI ?      24.33 g  \r\n");
}

TEST_F(Radwag, Loads_out_of_range_are_marked_and_read_zero) {
    Have(3000.01);
    EXPECT_EQ(Ask("SI\r\n"), "SI ^       0.00 g  \r\n");
    EXPECT_EQ(Ask("S\r\n"), "S A\r\nS  ^       0.00 g  \r\n");
    Have(-300.01);
    EXPECT_EQ(Ask("SI\r\n"), "SI v       0.00 g  \r\n");
}

TEST_F(Radwag, Tare_and_zero_confirm_and_say_when_they_are_done) {
    Have(50);
    EXPECT_EQ(Ask("T\r\nSI\r\n"), "T A\r\nT D\r\nSI         0.00 g  \r\n");
    EXPECT_EQ(Ask("Z\r\n"), "Z A\r\nZ D\r\n");
}

TEST_F(Radwag, A_load_below_zero_is_out_of_the_tare_range) {
    Have(-5);
    EXPECT_EQ(Ask("T\r\n"), "T A\r\nT v\r\n");
    EXPECT_EQ(Ask("Z\r\nT\r\n"), "Z A\r\nZ D\r\nT A\r\nT D\r\n");
}

TEST_F(Radwag, Zero_is_refused_outside_its_range) {
    Have(60);
    EXPECT_EQ(Ask("Z\r\n"), "Z A\r\nZ D\r\n");
    Have(60.01);
    EXPECT_EQ(Ask("Z\r\n"), "Z A\r\nZ ^\r\n");
}

TEST_F(Radwag, Waiting_ends_with_E_at_the_stability_time_out) {
    Have(0, {"stability-time-out=3s"});
    AddFault("busy");
    EXPECT_EQ(Ask("S\r\n"), "S A\r\n");
    EXPECT_EQ(AnswersUntil(2999ms), "");
    EXPECT_EQ(AnswersUntil(3000ms), "S E\r\n");
    EXPECT_EQ(Ask("T\r\n", 4000ms), "T A\r\n");
    EXPECT_EQ(AnswersUntil(7000ms), "T E\r\n");
    EXPECT_EQ(Ask("Z\r\n", 8000ms), "Z A\r\n");
    EXPECT_EQ(AnswersUntil(11000ms), "Z E\r\n");
}

TEST_F(Radwag, A_command_that_comes_during_a_wait_gets_I) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nT\r\nZ\r\nS\r\nSI\r\n", 100ms), "S A\r\nT I\r\nZ I\r\nS I\r\nSI I\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "S         50.00 g  \r\n");
}

TEST_F(Radwag, Some_models_keep_a_command_that_comes_during_a_wait) {
    Have(0, {"during-wait=keep"});
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nT\r\n", 100ms), "S A\r\n");
    EXPECT_EQ(AnswersUntil(5000ms), "S         50.00 g  \r\nT A\r\nT D\r\n");
}

TEST_F(Radwag, SI_gets_I_while_the_balance_is_busy) {
    Have(1);
    AddFault("busy@0s+1s");
    EXPECT_EQ(Ask("SI\r\n", 500ms), "SI I\r\n");
    EXPECT_EQ(Ask("SI\r\n", 1000ms), "SI         1.00 g  \r\n");
}

TEST_F(Radwag, C1_repeats_until_C0_and_so_does_CU1_until_CU0) {
    Have(1);
    EXPECT_EQ(Ask("C1\r\n"), "C1 A\r\nSI         1.00 g  \r\n");
    EXPECT_EQ(AnswersUntil(200ms), "SI         1.00 g  \r\nSI         1.00 g  \r\n");
    EXPECT_EQ(Ask("C0\r\n", 200ms), "C0 A\r\n");
    EXPECT_EQ(AnswersUntil(1000ms), "");
    EXPECT_EQ(Ask("CU1\r\nCU0\r\n", 1000ms), "CU1 A\r\nSUI        1.00 g  \r\nCU0 A\r\n");
    EXPECT_EQ(AnswersUntil(2000ms), "");
}

TEST_F(Radwag, Unknown_commands_get_ES) {
    Have(1);
    EXPECT_EQ(Ask("@\r\ns\r\nT 1\r\n\r\n"), "ES\r\nES\r\nES\r\n");
}

TEST_F(Radwag, After_a_power_cut_it_has_forgotten_what_it_waited_for) {
    Have(0);
    AddFault("busy@0s+1500ms");
    AddFault("power-cut@1s+1s");
    EXPECT_EQ(Ask("S\r\n"), "S A\r\n");
    EXPECT_EQ(AnswersUntil(3000ms), "");
    EXPECT_EQ(Ask("S\r\n", 3000ms), "S A\r\nS          0.00 g  \r\n");
}

TEST_F(Radwag, Its_settings_are_those_of_its_driver) {
    EXPECT_EQ(simulator::FindInstrument("radwag").line.Text(), "9600,7E1");
    EXPECT_EQ(simulator::FindInstrument("radwag").driverClass, "WbalanceRadwag");
}

// Manuals of PS, AS and WTC, chapter "Communication protocol": PC lists the commands that exist.
TEST_F(Radwag, PC_lists_the_commands_of_its_series) {
    Have(1);
    EXPECT_EQ(Ask("PC\r\n"),
              "PC A \"Z,T,OT,UT,S,SI,SU,SUI,C1,C0,CU1,CU0,DH,UH,ODH,OUH,NB,BN,FS,RV,UI,US,UG,"
              "OMI,OMS,OMG,BP,A,EV,FIS,ARS,LDS,PC\"\r\n");
    Have(1, {"series=wtc"});
    EXPECT_EQ(Ask("PC\r\n"), "PC -> Z,T,OT,UT,S,SI,SU,SUI,C1,C0,CU1,CU0,K1,K0,NB,PC\r\n");
}

TEST_F(Radwag, What_PC_lists_is_answered_and_the_rest_gets_ES) {
    const std::vector<std::string> all = {
        "Z",    "T",   "OT",   "UT 1",  "S",     "SI",    "SU",    "SUI", "C1",     "C0",
        "CU1",  "CU0", "DH 1", "UH 1",  "ODH",   "OUH",   "K1",    "K0",  "NB",     "BN",
        "FS",   "RV",  "UI",   "US mg", "UG",    "OMI",   "OMS 1", "OMG", "BP 100", "SS",
        "IC",   "PC",  "A 1",  "EV 1",  "FIS 1", "ARS 1", "LDS 1", "SIA", "SM 1",   "RM 1",
        "TV 1", "I4",  "C2",   "CU2",   "O",     "si",    "OTX",   "USX"};
    for (const std::string series : {"ps", "hrp", "ma", "wtc", "wpw"}) {
        Have(1, {"series=" + series});
        const std::string list = Ask("PC\r\n");
        for (const std::string& command : all) {
            Have(1, {"series=" + series});
            const std::string name = command.substr(0, command.find(' '));
            const auto stands = [&](const char* before) {
                const std::size_t at = list.find(before + name);
                const char next = at == std::string::npos ? '.' : list[at + 1 + name.size()];
                return next == ',' || next == '"' || next == '\r';
            };
            const bool isListed = stands(",") || stands("\"") || stands(" ");
            EXPECT_EQ(Ask(command + "\r\n") != "ES\r\n", isListed) << series << " " << command;
        }
    }
}

// PS and AS: US chooses the unit of SU, SUI and CU1; S and SI keep to the basic one.
TEST_F(Radwag, US_chooses_the_unit_of_SU_and_SUI) {
    Have(12.5);
    EXPECT_EQ(Ask("UI\r\nUG\r\nUS mg\r\nUG\r\n"),
              "UI \"g, mg, ct\" OK\r\nUG g OK\r\nUS mg OK\r\nUG mg OK\r\n");
    EXPECT_EQ(Ask("SUI\r\nSI\r\nSU\r\n"),
              "SUI       12500 mg \r\nSI        12.50 g  \r\nSU A\r\nSU        12500 mg \r\n");
    EXPECT_EQ(Ask("US next\r\nSUI\r\nUS next\r\nSUI\r\n"),
              "US ct OK\r\nSUI       62.50 ct \r\nUS g OK\r\nSUI       12.50 g  \r\n");
    EXPECT_EQ(Ask("US\r\nUS lb\r\nUG\r\n"), "US E\r\nUS E\r\nUG g OK\r\n");
}

TEST_F(Radwag, CU1_repeats_in_the_unit_that_was_chosen) {
    Have(12.5);
    EXPECT_EQ(Ask("US mg\r\nCU1\r\n"), "US mg OK\r\nCU1 A\r\nSUI       12500 mg \r\n");
    EXPECT_EQ(AnswersUntil(100ms), "SUI       12500 mg \r\n");
    EXPECT_EQ(Ask("C1\r\nC0\r\n", 150ms), "C1 A\r\nSI        12.50 g  \r\nC0 A\r\n");
}

// PS and AS: SU waits as S does; SUI comes at once. WPW and WPHR confirm those at once, too.
TEST_F(Radwag, SU_waits_for_the_pan_and_SUI_marks_it) {
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("SUI\r\nSU\r\nSUI\r\n", 100ms), "SUI?      24.33 g  \r\nSU A\r\nSUI I\r\n");
    EXPECT_EQ(AnswersUntil(5s), "SU        50.00 g  \r\n");
    Have(1, {"confirms-at-once"});
    EXPECT_EQ(Ask("SI\r\nSUI\r\n"),
              "SI A\r\nSI         1.00 g  \r\nSUI A\r\nSUI        1.00 g  \r\n");
}

// PS, AS, WTC: UT presets a tare without unit, OT says it in 19 bytes, on the WTC in 21.
TEST_F(Radwag, UT_sets_the_tare_and_OT_says_it) {
    Have(100);
    EXPECT_EQ(Ask("UT 12.5\r\nSI\r\nOT\r\n"),
              "UT OK\r\nSI        87.50 g  \r\nOT     12.50 g   \r\n");
    EXPECT_EQ(Ask("UT\r\nUT 1,5\r\nUT 5000\r\nSI\r\n"),
              "ES\r\nES\r\nUT I\r\nSI        87.50 g  \r\n");
    Have(100, {"series=wtc"});
    EXPECT_EQ(Ask("UT 12.5\r\nOT\r\n"), "UT OK\r\nOT        12.50 g  \r\n");
}

// PS, AS: DH and UH set the limits, ODH and OUH say them without the O.
TEST_F(Radwag, DH_and_UH_set_limits_that_ODH_and_OUH_say) {
    Have(1);
    EXPECT_EQ(Ask("DH 12.5\r\nUH 20\r\nODH\r\nOUH\r\n"),
              "DH OK\r\nUH OK\r\nDH     12.50 g   \r\nUH     20.00 g   \r\n");
    EXPECT_EQ(Ask("DH\r\nUH x\r\nODH\r\n"), "ES\r\nES\r\nDH     12.50 g   \r\n");
}

// WTC, MA, MYA: K1 blocks the keys until K0 or power-off.
TEST_F(Radwag, K1_blocks_the_keys_until_K0_or_power_off) {
    Have(1, {"series=ma"});
    const auto key = [&] {
        instrument_->Press(simulator::Key::Print);
        return instrument_->TakeOutput();
    };
    EXPECT_EQ(Ask("K1\r\n"), "K1 OK\r\n");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(Ask("K0\r\n"), "K0 OK\r\n");
    EXPECT_EQ(key(), "        1.00 g  \r\n");
    EXPECT_EQ(Ask("K1\r\n"), "K1 OK\r\n");
    AddFault("power-cut@1s+1s");
    EXPECT_EQ(AnswersUntil(3s), "");
    EXPECT_EQ(key(), "        0.00 g  \r\n");
}

// PS, AS, MA, HRP: NB serial number, BN type, FS capacity without unit, RV software.
TEST_F(Radwag, Says_what_it_is) {
    Have(1);
    EXPECT_EQ(Ask("NB\r\nBN\r\nFS\r\nRV\r\n"),
              "NB A \"123456\"\r\nBN A \"PS\"\r\nFS A \"3000.00\"\r\nRV A \"r.3.0.9\"\r\n");
    Have(0);
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nNB\r\n", 100ms), "S A\r\nNB I\r\n");
}

// PS, AS: OMI lists the modes, OMS chooses one, OMG says it; counting shows pieces.
TEST_F(Radwag, OMS_chooses_weighing_or_counting) {
    Have(12.4);
    EXPECT_EQ(Ask("OMI\r\n"), "OMI\r\n1 \"Weighing\"\r\n2 \"Parts counting\"\r\nOK\r\n");
    EXPECT_EQ(Ask("OMG\r\nOMS 2\r\nOMG\r\nSUI\r\nSI\r\n"),
              "OMG 1 OK\r\nOMS OK\r\nOMG 2 OK\r\nSUI          12 pcs\r\nSI        12.40 g  \r\n");
    EXPECT_EQ(Ask("OMS 13\r\nOMS\r\nOMS 1\r\nSUI\r\n"),
              "OMS E\r\nOMS E\r\nOMS OK\r\nSUI       12.40 g  \r\n");
}

// PS: BP beeps for 50 to 5000 ms, more is cut. MA, KET: SS is the print key.
TEST_F(Radwag, BP_beeps_and_SS_is_the_print_key) {
    Have(1);
    EXPECT_EQ(Ask("BP 350\r\nBP 9000\r\nBP 49\r\nBP\r\n"), "BP OK\r\nBP OK\r\nBP E\r\nBP E\r\n");
    Have(1, {"series=ma"});
    EXPECT_EQ(Ask("SS\r\n"), "SS OK\r\n        1.00 g  \r\n");
}

// MA p. 143: IC adjusts with the built-in weight.
TEST_F(Radwag, IC_adjusts_and_refuses_everything_meanwhile) {
    Have(1, {"series=ma", "adjustment-time=5s"});
    EXPECT_EQ(Ask("IC\r\nSI\r\nIC\r\n"), "IC A\r\nSI I\r\nIC I\r\n");
    EXPECT_EQ(AnswersUntil(5s), "IC D\r\n");
    EXPECT_EQ(Ask("IC\r\n", 6s), "IC A\r\n");
    PutOn(50);
    EXPECT_EQ(AnswersUntil(10900ms), "");
    PutOn(100);
    EXPECT_EQ(AnswersUntil(11s), "IC E\r\n");
}

// WTC and PS, chapter "Communication protocol": I when a command is not accessible now.
TEST_F(Radwag, C1_and_CU1_get_I_while_the_balance_is_busy) {
    Have(1);
    AddFault("busy@0s+1s");
    EXPECT_EQ(Ask("C1\r\nCU1\r\n"), "C1 I\r\nCU1 I\r\n");
    EXPECT_EQ(AnswersUntil(2s), "");
}

// PS and MA: A, EV, FIS, ARS and LDS with a number: OK, E, I.
TEST_F(Radwag, Settings_of_filter_and_autozero_are_acknowledged) {
    Have(1);
    EXPECT_EQ(Ask("A 1\r\nEV 0\r\nFIS 3\r\nARS 2\r\nLDS 1\r\n"),
              "A OK\r\nEV OK\r\nFIS OK\r\nARS OK\r\nLDS OK\r\n");
    EXPECT_EQ(Ask("A\r\nEV x\r\nFIS 1.5\r\n"), "A E\r\nEV E\r\nFIS E\r\n");
    PutOn(50);
    EXPECT_EQ(Ask("S\r\nFIS 1\r\n", 100ms), "S A\r\nFIS I\r\n");
}

// C41H, WPW: a line of 21 bytes for each platform.
TEST_F(Radwag, SIA_sends_a_frame_of_each_platform) {
    Have(0, {"series=wpw"});
    EXPECT_EQ(Ask("SIA\r\n"), "P1         0.00 g  \r\n");
    PutOn(50);
    EXPECT_EQ(Ask("SIA\r\n", 100ms), "P1 ?      24.33 g  \r\n");
    AddFault("busy");
    EXPECT_EQ(Ask("SIA\r\n", 200ms), "SIA I\r\n");
}

// The unit that somebody sets at the menu is that of every frame.
TEST_F(Radwag, Every_frame_has_the_unit_that_is_set_at_the_menu) {
    Have(1500, {"unit=kg"});
    EXPECT_EQ(Ask("S\r\nSI\r\nSU\r\nSUI\r\n"),
              "S A\r\nS       1.50000 kg \r\nSI      1.50000 kg \r\nSU A\r\n"
              "SU      1.50000 kg \r\nSUI     1.50000 kg \r\n");
    EXPECT_EQ(Ask("C1\r\nC0\r\nUT 0.5\r\nOT\r\nODH\r\nUG\r\n"),
              "C1 A\r\nSI      1.50000 kg \r\nC0 A\r\nUT OK\r\nOT   0.50000 kg  \r\n"
              "DH   0.00000 kg  \r\nUG kg OK\r\n");
    EXPECT_EQ(Press(Key::Print), "     1.00000 kg \r\n");
}

TEST_F(Radwag, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "       12.50 g  \r\n");
}

TEST_F(Radwag, Out_of_range_the_print_key_sends_a_mark_and_zero) {
    Have(5000);
    EXPECT_EQ(Press(Key::Print), "^       0.00 g  \r\n");
}
