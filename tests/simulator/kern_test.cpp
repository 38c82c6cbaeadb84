#include "simulator/instruments/kern.h"

#include <gtest/gtest.h>

#include "simulator/Instrument.h"

using simulator::Character;
using simulator::Fault;
using simulator::Instrument;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// A Kern balance in virtual time: what it is asked, what it answers, to the byte.
class Kern : public testing::Test {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        instrument_ = std::make_unique<Instrument>(simulator::kern(), switches);
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

    std::unique_ptr<Instrument> instrument_;
};

}  // namespace

TEST_F(Kern, O8_sends_one_record_at_once) {
    have(12.5);
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n+  12.50 G S\r\n");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Kern, The_unit_has_two_characters) {
    have(1500, {"unit=kg", "capacity=6000"});
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n+1.50000KG S\r\n");
    have(12, {"unit=PCS", "readability=1"});
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n+     12PC S\r\n");
}

TEST_F(Kern, A_minus_sign_stands_in_front_of_the_blanks) {
    have(-3.25);
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n-   3.25 G S\r\n");
}

TEST_F(Kern, A_moving_pan_is_U) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("O8\r\n", 100ms), "A00\r\n+  24.33 G U\r\n");
}

TEST_F(Kern, O9_is_acknowledged_at_once_and_sends_its_record_at_rest) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("O9\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(answersUntil(10s), "+  50.00 G S\r\n");
    EXPECT_EQ(answersUntil(20s), "");
}

TEST_F(Kern, O0_ends_a_record_that_is_waited_for) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("O9\r\nO0\r\n", 100ms), "A00\r\nA00\r\n");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Kern, O1_sends_records_until_another_output_command) {
    have(12.5);
    EXPECT_EQ(ask("O1\r\n"), "A00\r\n+  12.50 G S\r\n");
    EXPECT_EQ(answersUntil(400ms), "+  12.50 G S\r\n+  12.50 G S\r\n");
    EXPECT_EQ(ask("O0\r\n", 500ms), "A00\r\n");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Kern, O1_goes_on_through_a_tare) {
    have(12.5);
    ask("O1\r\n");
    EXPECT_EQ(ask("T \r\n", 100ms), "A00\r\n");
    EXPECT_EQ(answersUntil(200ms), "+   0.00 G S\r\n");
}

TEST_F(Kern, O2_sends_records_at_rest_only) {
    have(0, {"interval=1s"});
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("O2\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(answersUntil(5100ms),
              "+  50.00 G S\r\n+  50.00 G S\r\n+  50.00 G S\r\n+  50.00 G S\r\n");
}

TEST_F(Kern, T_and_a_blank_tares) {
    have(12.5);
    EXPECT_EQ(ask("T \r\nO8\r\n"), "A00\r\nA00\r\n+   0.00 G S\r\n");
}

TEST_F(Kern, T_is_refused_out_of_range_and_below_zero) {
    have(-1);
    EXPECT_EQ(ask("T \r\n"), "E01\r\n");
    have(1000);
    EXPECT_EQ(ask("T \r\n"), "E01\r\n");
}

TEST_F(Kern, Commands_of_another_form_are_refused) {
    have(0);
    for (const char* command : {"T\r\n", "O8 \r\n", "O\r\n", "OC\r\n", "o8\r\n", "\r\n", "S\r\n"})
        EXPECT_EQ(ask(command), "E01\r\n") << command;
}

// Shinko AJ manual, 10.5, and Kern e-1226, chapter 8: output control. O3 sends a record with the
// key, O7 one at rest; after O0 there is none.
TEST_F(Kern, O3_and_O7_send_a_record_when_the_key_is_pressed) {
    have(0);
    const auto key = [&] {
        instrument_->press(simulator::Key::print);
        return instrument_->takeOutput();
    };
    EXPECT_EQ(ask("O3\r\n"), "A00\r\n");
    instrument_->balance().setLoad(50);
    answersUntil(100ms);
    EXPECT_EQ(key(), "+  24.33 G U\r\n");
    EXPECT_EQ(ask("O7\r\n", 100ms), "A00\r\n");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(answersUntil(5s), "+  50.00 G S\r\n");
    EXPECT_EQ(ask("O0\r\n", 5s), "A00\r\n");
    EXPECT_EQ(key(), "");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Kern, After_a_power_cut_the_key_sends_a_record_again) {
    have(5);
    EXPECT_EQ(ask("O0\r\n"), "A00\r\n");
    instrument_->addFault(Fault::parse("power-cut@1s+1s"));
    answersUntil(3s);
    instrument_->press(simulator::Key::print);
    EXPECT_EQ(instrument_->takeOutput(), "+   0.00 G S\r\n");
}

// Shinko AJ manual, 10.5: one stable record for each load, when zero or less was shown in between.
TEST_F(Kern, O4_sends_one_record_for_each_load) {
    have(0);
    EXPECT_EQ(ask("O4\r\n"), "A00\r\n");
    instrument_->balance().setLoad(50);
    EXPECT_EQ(answersUntil(5s), "+  50.00 G S\r\n");
    instrument_->balance().setLoad(80);
    EXPECT_EQ(answersUntil(10s), "");
    instrument_->balance().setLoad(0);
    EXPECT_EQ(answersUntil(15s), "");
    instrument_->balance().setLoad(20);
    EXPECT_EQ(answersUntil(20s), "+  20.00 G S\r\n");
}

// Shinko AJ manual, 10.5: one record at rest, again after each unstable time, zero included.
TEST_F(Kern, O5_sends_one_record_whenever_the_pan_has_come_to_rest) {
    have(0);
    EXPECT_EQ(ask("O5\r\n"), "A00\r\n+   0.00 G S\r\n");
    instrument_->balance().setLoad(50);
    EXPECT_EQ(answersUntil(5s), "+  50.00 G S\r\n");
    instrument_->balance().setLoad(0);
    EXPECT_EQ(answersUntil(10s), "+   0.00 G S\r\n");
    EXPECT_EQ(ask("O0\r\n", 10s), "A00\r\n");
    instrument_->balance().setLoad(50);
    EXPECT_EQ(answersUntil(15s), "");
}

// Shinko AJ manual, 10.5: O6 is O5, and sends all the time while the weight is unstable.
TEST_F(Kern, O6_sends_records_while_the_pan_moves_and_one_at_rest) {
    have(0, {"interval=300ms"});
    EXPECT_EQ(ask("O6\r\n"), "A00\r\n+   0.00 G S\r\n");
    EXPECT_EQ(answersUntil(3s), "");
    instrument_->balance().setLoad(50);
    EXPECT_EQ(answersUntil(10s),
              "+  43.23 G U\r\n+  49.08 G U\r\n+  49.88 G U\r\n+  49.98 G U\r\n+  50.00 G U\r\n+  "
              "50.00 G S\r\n");
}

// Only named in the manuals: they are acknowledged and send nothing.
TEST_F(Kern, OA_and_OB_are_acknowledged) {
    have(0);
    EXPECT_EQ(ask("OA\r\nOB\r\n"), "A00\r\nA00\r\n");
    EXPECT_EQ(answersUntil(10s), "");
}

TEST_F(Kern, A_command_with_a_damaged_character_is_refused) {
    have(0);
    instrument_->receive(Character{'O', false, true}, 0ms);
    EXPECT_EQ(ask("8\r\n"), "E01\r\n");
}

TEST_F(Kern, Out_of_range_the_status_is_E) {
    have(700);
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n+ 700.00 G E\r\n");
    have(-70);
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n-  70.00 G E\r\n");
}

TEST_F(Kern, The_7_digit_format_has_a_character_more) {
    have(12.345, {"digits=7", "readability=0.001"});
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n+  12.345 G S\r\n");
}

TEST_F(Kern, Zeros_can_take_the_place_of_the_blanks) {
    have(-3.25, {"fill=zero"});
    EXPECT_EQ(ask("O8\r\n"), "A00\r\n-0003.25 G S\r\n");
}

TEST_F(Kern, The_acknowledgement_can_stand_behind_the_record_or_be_missing) {
    have(12.5, {"acknowledgement=last"});
    EXPECT_EQ(ask("O8\r\n"), "+  12.50 G S\r\nA00\r\n");
    have(12.5, {"acknowledgement=none"});
    EXPECT_EQ(ask("O9\r\n"), "+  12.50 G S\r\n");
    EXPECT_EQ(ask("T \r\n"), "A00\r\n");
}

TEST_F(Kern, A_balance_that_never_rests_sends_nothing_for_O9) {
    have(12.5);
    instrument_->addFault(Fault::parse("busy"));
    EXPECT_EQ(ask("O9\r\n"), "A00\r\n");
    EXPECT_EQ(answersUntil(60s), "");
    EXPECT_EQ(ask("O8\r\n", 60s), "A00\r\n+  12.50 G U\r\n");
}
