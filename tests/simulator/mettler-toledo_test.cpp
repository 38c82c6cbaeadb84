#include "simulator/instruments/mettler-toledo.h"

#include <gtest/gtest.h>

#include "simulator/Instrument.h"

using simulator::Character;
using simulator::Instrument;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// An MT-SICS balance in virtual time: what it is asked, what it answers, to the byte.
class MtSics : public testing::Test {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        instrument_ = std::make_unique<Instrument>(simulator::mettlerToledo(), switches);
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
    /// Puts a load on the pan, which takes its time to come to rest.
    void putOn(double load) { instrument_->balance().setLoad(load); }

    std::unique_ptr<Instrument> instrument_;
};

}  // namespace

TEST_F(MtSics, S_sends_a_stable_weight_in_ten_columns) {
    have(100);
    EXPECT_EQ(ask("S\r\n"), "S S     100.00 g\r\n");
}

TEST_F(MtSics, A_minus_sign_touches_the_digits) {
    have(-12.5);
    EXPECT_EQ(ask("S\r\n"), "S S     -12.50 g\r\n");
}

TEST_F(MtSics, S_waits_until_the_pan_is_at_rest) {
    have(0);
    putOn(50);
    EXPECT_EQ(ask("S\r\n", 100ms), "");
    EXPECT_EQ(answersUntil(5000ms), "S S      50.00 g\r\n");
}

TEST_F(MtSics, SI_is_answered_with_S_and_the_state_of_the_pan) {
    have(0);
    EXPECT_EQ(ask("SI\r\n"), "S S       0.00 g\r\n");
    putOn(50);
    EXPECT_EQ(ask("SI\r\n", 100ms), "S D      24.33 g\r\n");
}

TEST_F(MtSics, A_command_that_comes_during_a_wait_is_carried_out_after_it) {
    have(0);
    putOn(50);
    EXPECT_EQ(ask("S\r\nTA\r\nI4\r\n", 100ms), "");
    EXPECT_EQ(answersUntil(5000ms),
              "S S      50.00 g\r\nTA A       0.00 g\r\nI4 A \"1126493049\"\r\n");
}

TEST_F(MtSics, Reset_cancels_what_is_waited_for_and_keeps_the_tare) {
    have(0);
    EXPECT_EQ(ask("TA 7.5 g\r\n"), "TA A       7.50 g\r\n");
    putOn(50);
    EXPECT_EQ(ask("S\r\n@\r\n", 100ms), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(answersUntil(5000ms), "");
    EXPECT_EQ(ask("S\r\n", 5000ms), "S S      42.50 g\r\n");
}

TEST_F(MtSics, Reset_stays_unanswered_where_that_is_switched_off) {
    have(1, {"reset-answer=off"});
    EXPECT_EQ(ask("@\r\n"), "");
    EXPECT_EQ(ask("I4\r\n"), "I4 A \"1126493049\"\r\n");
}

TEST_F(MtSics, After_a_power_cut_it_sends_its_serial_number_unasked) {
    have(1, {"serial-number=B044321"});
    instrument_->addFault(simulator::Fault::parse("power-cut@1s+2s"));
    EXPECT_EQ(answersUntil(2999ms), "");
    EXPECT_EQ(answersUntil(3000ms), "I4 A \"B044321\"\r\n");
    have(1, {"power-on-line=off"});
    instrument_->addFault(simulator::Fault::parse("power-cut@1s+2s"));
    EXPECT_EQ(answersUntil(4000ms), "");
}

TEST_F(MtSics, Waiting_ends_with_I_at_the_stability_time_out) {
    have(0, {"stability-time-out=3s"});
    instrument_->addFault(simulator::Fault::parse("busy"));
    EXPECT_EQ(ask("S\r\n"), "");
    EXPECT_EQ(answersUntil(2999ms), "");
    EXPECT_EQ(answersUntil(3000ms), "S I\r\n");
    EXPECT_EQ(ask("Z\r\n", 4000ms), "");
    EXPECT_EQ(answersUntil(7000ms), "Z I\r\n");
    EXPECT_EQ(ask("T\r\n", 8000ms), "");
    EXPECT_EQ(answersUntil(11000ms), "T I\r\n");
}

TEST_F(MtSics, Loads_out_of_range_are_plus_and_minus) {
    have(610.01);
    EXPECT_EQ(ask("S\r\nSI\r\nT\r\nZ\r\n"), "S +\r\nS +\r\nT +\r\nZ +\r\n");
    have(-61.01);
    EXPECT_EQ(ask("S\r\nSI\r\nT\r\nZ\r\n"), "S -\r\nS -\r\nT -\r\nZ -\r\n");
}

TEST_F(MtSics, Zero_is_refused_outside_its_range) {
    have(12.2);
    EXPECT_EQ(ask("Z\r\nS\r\n"), "Z A\r\nS S       0.00 g\r\n");
    have(12.21);
    EXPECT_EQ(ask("Z\r\n"), "Z +\r\n");
}

TEST_F(MtSics, Tare_answers_with_the_tare_weight) {
    have(100);
    EXPECT_EQ(ask("T\r\nS\r\n"), "T S     100.00 g\r\nS S       0.00 g\r\n");
}

TEST_F(MtSics, TA_sets_and_shows_the_tare_and_TAC_clears_it) {
    have(100);
    EXPECT_EQ(ask("TA 12.50 g\r\n"), "TA A      12.50 g\r\n");
    EXPECT_EQ(ask("TA\r\n"), "TA A      12.50 g\r\n");
    EXPECT_EQ(ask("SI\r\n"), "S S      87.50 g\r\n");
    EXPECT_EQ(ask("TAC\r\nTA\r\n"), "TAC A\r\nTA A       0.00 g\r\n");
}

TEST_F(MtSics, TA_with_a_bad_parameter_gets_L_and_changes_nothing) {
    have(100);
    EXPECT_EQ(ask("TA 12.50\r\nTA g\r\nTA 1 kg\r\nTA -1 g\r\nTA 611 g\r\n"),
              "TA L\r\nTA L\r\nTA L\r\nTA L\r\nTA L\r\n");
    EXPECT_EQ(ask("TA\r\n"), "TA A       0.00 g\r\n");
}

TEST_F(MtSics, D_shows_a_text_and_DW_the_weight_again) {
    have(1);
    EXPECT_EQ(ask("D \"READY\"\r\n"), "D A\r\n");
    EXPECT_EQ(instrument_->balance().displayText(), "READY");
    EXPECT_EQ(ask("DW\r\n"), "DW A\r\n");
    EXPECT_EQ(instrument_->balance().displayText(), "");
}

TEST_F(MtSics, D_cuts_a_text_that_is_longer_than_the_display) {
    have(1, {"display-width=7"});
    EXPECT_EQ(ask("D \"READY TO GO\"\r\n"), "D R\r\n");
    EXPECT_EQ(instrument_->balance().displayText(), "READY T");
    EXPECT_EQ(ask("D READY\r\n"), "D L\r\n");
}

TEST_F(MtSics, Switched_off_it_weighs_nothing_and_switched_on_it_sends_its_number) {
    have(1);
    EXPECT_EQ(ask("PWR 0\r\nS\r\nSI\r\nT\r\nZ\r\nTA\r\n"),
              "PWR A\r\nS I\r\nS I\r\nT I\r\nZ I\r\nTA I\r\n");
    EXPECT_EQ(ask("PWR 1\r\nS\r\n"), "PWR A\r\nI4 A \"1126493049\"\r\nS S       1.00 g\r\n");
    EXPECT_EQ(ask("PWR\r\nPWR 2\r\n"), "PWR L\r\nPWR L\r\n");
}

TEST_F(MtSics, SIR_repeats_until_another_weight_is_asked_for) {
    have(1, {"repeat-interval=500ms"});
    EXPECT_EQ(ask("SIR\r\n"), "S S       1.00 g\r\n");
    EXPECT_EQ(answersUntil(1000ms), "S S       1.00 g\r\nS S       1.00 g\r\n");
    EXPECT_EQ(ask("I4\r\n", 1000ms), "I4 A \"1126493049\"\r\n");
    EXPECT_EQ(answersUntil(1500ms), "S S       1.00 g\r\n");
    EXPECT_EQ(ask("SI\r\n", 1600ms), "S S       1.00 g\r\n");
    EXPECT_EQ(answersUntil(5000ms), "");
}

TEST_F(MtSics, Unknown_commands_get_ES_and_needless_parameters_EL) {
    have(1);
    EXPECT_EQ(ask("B 5.00\r\n"), "ES\r\n");
    EXPECT_EQ(ask("si\r\n"), "ES\r\n");
    EXPECT_EQ(ask("S 1\r\n"), "EL\r\n");
    EXPECT_EQ(ask("\r\n"), "");
}

TEST_F(MtSics, A_command_waits_for_its_whole_line_end) {
    have(1);
    EXPECT_EQ(ask("S"), "");
    EXPECT_EQ(ask("I\r", 10ms), "");
    EXPECT_EQ(ask("\n", 20ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, Wrong_parity_gets_one_ET_for_the_command) {
    have(1);
    instrument_->receive(Character{'S', true, false}, 0ms);
    instrument_->receive(Character{'I', true, false}, 1ms);
    EXPECT_EQ(instrument_->takeOutput(), "ET\r\n");
    EXPECT_EQ(ask("\r\nSI\r\n", 2ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, After_a_spoiled_line_end_a_pause_begins_a_new_command) {
    have(1);
    for (const char byte : {'S', '\r', '\n'})
        instrument_->receive(Character{byte, true, false}, 0ms);
    EXPECT_EQ(instrument_->takeOutput(), "ET\r\n");
    EXPECT_EQ(ask("SI\r\n", 200ms), "S S       1.00 g\r\n");
}

TEST_F(MtSics, A_break_gets_ET) {
    have(1);
    instrument_->receiveBreak(0ms);
    EXPECT_EQ(instrument_->takeOutput(), "ET\r\n");
}

TEST(MtSicsFamily, Each_model_shows_its_own_decimals_at_its_own_settings) {
    const auto weightOf = [](const char* name) {
        Instrument instrument(simulator::findInstrument(name));
        instrument.balance().startWithLoad(12.3456);
        instrument.receive("S\r\n", 0ms);
        return instrument.takeOutput();
    };
    EXPECT_EQ(weightOf("mettler-toledo"), "S S      12.35 g\r\n");
    EXPECT_EQ(weightOf("mettler-pr2003"), "S S     12.346 g\r\n");
    EXPECT_EQ(weightOf("mettler-xs"), "S S    12.3456 g\r\n");
    EXPECT_EQ(weightOf("mettler-sb32001"), "S S       12.3 g\r\n");
    EXPECT_EQ(simulator::findInstrument("mettler-toledo").line.text(), "2400,7E1");
    EXPECT_EQ(simulator::findInstrument("mettler-pr2003").line.text(), "2400,7E1");
    EXPECT_EQ(simulator::findInstrument("mettler-xs").line.text(), "9600,8N1");
    EXPECT_EQ(simulator::findInstrument("mettler-sb32001").line.text(), "2400,7E1");
}
