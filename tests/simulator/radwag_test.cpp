#include "simulator/instruments/radwag.h"

#include <gtest/gtest.h>

#include "simulator/Instrument.h"

using simulator::Fault;
using simulator::Instrument;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// A balance in virtual time: what it is asked, what it answers, to the byte.
class Radwag : public testing::Test {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        instrument_ = std::make_unique<Instrument>(simulator::radwag(), switches);
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
    void addFault(const std::string& fault) { instrument_->addFault(Fault::parse(fault)); }

    std::unique_ptr<Instrument> instrument_;
};

}  // namespace

TEST_F(Radwag, S_confirms_and_sends_a_frame_of_21_bytes) {
    have(12.34);
    EXPECT_EQ(ask("S\r\n"), "S A\r\nS         12.34 g  \r\n");
}

TEST_F(Radwag, The_minus_sign_stands_apart_from_the_mass) {
    have(-8.5);
    EXPECT_EQ(ask("S\r\n"), "S A\r\nS    -     8.50 g  \r\n");
}

TEST_F(Radwag, Some_models_send_frames_of_22_bytes) {
    have(-8.5, {"frame=22"});
    EXPECT_EQ(ask("SI\r\n"), "SI    -     8.50 g  \r\n");
}

TEST_F(Radwag, S_waits_until_the_pan_is_at_rest) {
    have(0);
    putOn(50);
    EXPECT_EQ(ask("S\r\n", 100ms), "S A\r\n");
    EXPECT_EQ(answersUntil(5000ms), "S         50.00 g  \r\n");
}

TEST_F(Radwag, SI_sends_a_frame_at_once_and_marks_a_moving_pan) {
    have(0);
    EXPECT_EQ(ask("SI\r\n"), "SI         0.00 g  \r\n");
    putOn(50);
    EXPECT_EQ(ask("SI\r\n", 100ms), "SI ?      24.33 g  \r\n");
}

TEST_F(Radwag, Loads_out_of_range_are_marked_and_read_zero) {
    have(3000.01);
    EXPECT_EQ(ask("SI\r\n"), "SI ^       0.00 g  \r\n");
    EXPECT_EQ(ask("S\r\n"), "S A\r\nS  ^       0.00 g  \r\n");
    have(-300.01);
    EXPECT_EQ(ask("SI\r\n"), "SI v       0.00 g  \r\n");
}

TEST_F(Radwag, Tare_and_zero_confirm_and_say_when_they_are_done) {
    have(50);
    EXPECT_EQ(ask("T\r\nSI\r\n"), "T A\r\nT D\r\nSI         0.00 g  \r\n");
    EXPECT_EQ(ask("Z\r\n"), "Z A\r\nZ D\r\n");
}

TEST_F(Radwag, A_load_below_zero_is_out_of_the_tare_range) {
    have(-5);
    EXPECT_EQ(ask("T\r\n"), "T A\r\nT v\r\n");
    EXPECT_EQ(ask("Z\r\nT\r\n"), "Z A\r\nZ D\r\nT A\r\nT D\r\n");
}

TEST_F(Radwag, Zero_is_refused_outside_its_range) {
    have(60);
    EXPECT_EQ(ask("Z\r\n"), "Z A\r\nZ D\r\n");
    have(60.01);
    EXPECT_EQ(ask("Z\r\n"), "Z A\r\nZ ^\r\n");
}

TEST_F(Radwag, Waiting_ends_with_E_at_the_stability_time_out) {
    have(0, {"stability-time-out=3s"});
    addFault("busy");
    EXPECT_EQ(ask("S\r\n"), "S A\r\n");
    EXPECT_EQ(answersUntil(2999ms), "");
    EXPECT_EQ(answersUntil(3000ms), "S E\r\n");
    EXPECT_EQ(ask("T\r\n", 4000ms), "T A\r\n");
    EXPECT_EQ(answersUntil(7000ms), "T E\r\n");
    EXPECT_EQ(ask("Z\r\n", 8000ms), "Z A\r\n");
    EXPECT_EQ(answersUntil(11000ms), "Z E\r\n");
}

TEST_F(Radwag, A_command_that_comes_during_a_wait_gets_I) {
    have(0);
    putOn(50);
    EXPECT_EQ(ask("S\r\nT\r\nZ\r\nS\r\nSI\r\n", 100ms), "S A\r\nT I\r\nZ I\r\nS I\r\nSI I\r\n");
    EXPECT_EQ(answersUntil(5000ms), "S         50.00 g  \r\n");
}

TEST_F(Radwag, Some_models_keep_a_command_that_comes_during_a_wait) {
    have(0, {"during-wait=keep"});
    putOn(50);
    EXPECT_EQ(ask("S\r\nT\r\n", 100ms), "S A\r\n");
    EXPECT_EQ(answersUntil(5000ms), "S         50.00 g  \r\nT A\r\nT D\r\n");
}

TEST_F(Radwag, SI_gets_I_while_the_balance_is_busy) {
    have(1);
    addFault("busy@0s+1s");
    EXPECT_EQ(ask("SI\r\n", 500ms), "SI I\r\n");
    EXPECT_EQ(ask("SI\r\n", 1000ms), "SI         1.00 g  \r\n");
}

TEST_F(Radwag, C1_repeats_until_C0_and_so_does_CU1_until_CU0) {
    have(1);
    EXPECT_EQ(ask("C1\r\n"), "C1 A\r\nSI         1.00 g  \r\n");
    EXPECT_EQ(answersUntil(200ms), "SI         1.00 g  \r\nSI         1.00 g  \r\n");
    EXPECT_EQ(ask("C0\r\n", 200ms), "C0 A\r\n");
    EXPECT_EQ(answersUntil(1000ms), "");
    EXPECT_EQ(ask("CU1\r\nCU0\r\n", 1000ms), "CU1 A\r\nSI         1.00 g  \r\nCU0 A\r\n");
    EXPECT_EQ(answersUntil(2000ms), "");
}

TEST_F(Radwag, Unknown_commands_get_ES) {
    have(1);
    EXPECT_EQ(ask("@\r\ns\r\nT 1\r\n\r\n"), "ES\r\nES\r\nES\r\n");
}

TEST_F(Radwag, After_a_power_cut_it_has_forgotten_what_it_waited_for) {
    have(0);
    addFault("busy@0s+1500ms");
    addFault("power-cut@1s+1s");
    EXPECT_EQ(ask("S\r\n"), "S A\r\n");
    EXPECT_EQ(answersUntil(3000ms), "");
    EXPECT_EQ(ask("S\r\n", 3000ms), "S A\r\nS          0.00 g  \r\n");
}

TEST_F(Radwag, Its_settings_are_those_of_its_driver) {
    EXPECT_EQ(simulator::findInstrument("radwag").line.text(), "9600,7E1");
    EXPECT_EQ(simulator::findInstrument("radwag").driverClass, "WbalanceRadwag");
}
