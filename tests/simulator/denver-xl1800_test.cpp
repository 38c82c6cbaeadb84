#include "simulator/instruments/denver-xl1800.h"

#include <gtest/gtest.h>

#include "simulator/Instrument.h"

using simulator::Instrument;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// An XL-1800 in virtual time: what it is asked, what it answers, to the byte.
class DenverXl1800 : public testing::Test {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        instrument_ = std::make_unique<Instrument>(simulator::denverXl1800(), switches);
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

TEST_F(DenverXl1800, A_request_without_a_line_end_is_answered_with_a_marked_line) {
    have(12.34);
    EXPECT_EQ(ask("?"), "");
    EXPECT_EQ(ask("1"), "1+    12.34 g\r\n");
    have(-12.34);
    EXPECT_EQ(ask("?1"), "1-    12.34 g\r\n");
}

TEST_F(DenverXl1800, A_moving_pan_is_U) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("?1", 100ms), "U+    24.33 g\r\n");
}

TEST_F(DenverXl1800, T_tares_without_an_answer) {
    have(12.34);
    EXPECT_EQ(ask("T"), "");
    EXPECT_EQ(ask("?1"), "1+     0.00 g\r\n");
}

TEST_F(DenverXl1800, A_tare_waits_for_the_pan_and_a_request_behind_it_is_answered_at_once) {
    have(0);
    instrument_->balance().setLoad(50);
    EXPECT_EQ(ask("T?1", 100ms), "U+    24.33 g\r\n");
    EXPECT_EQ(ask("?1", 5s), "1+     0.00 g\r\n");
}

TEST_F(DenverXl1800, What_it_does_not_know_is_ignored) {
    have(1);
    EXPECT_EQ(ask("X\r\n?X?1"), "1+     1.00 g\r\n");
}

TEST_F(DenverXl1800, A_gap_splits_the_line_behind_its_first_character) {
    have(12.34, {"gap=300ms"});
    EXPECT_EQ(ask("?1"), "1");
    EXPECT_EQ(answersUntil(299ms), "");
    EXPECT_EQ(answersUntil(300ms), "+    12.34 g\r\n");
}

TEST_F(DenverXl1800, A_relatives_line_has_a_blank_between_status_and_sign) {
    have(0, {"form=spaced", "readability=0.0001"});
    EXPECT_EQ(ask("?1"), "1 +    0.0000\r\n");
}

TEST_F(DenverXl1800, An_echo_stands_ahead_of_the_line) {
    have(12.34, {"echo", "form=bare"});
    EXPECT_EQ(ask("?1"), "?1+     12.34\r\n");
}

TEST_F(DenverXl1800, The_time_of_day_can_stand_ahead_of_the_line) {
    have(12.34, {"time-line"});
    EXPECT_EQ(ask("?1"), "09:10:37\r\n1+    12.34 g\r\n");
}

TEST_F(DenverXl1800, Letters_take_the_place_of_a_number_out_of_range) {
    have(2000);
    EXPECT_EQ(ask("?1"), "1+      HHH g\r\n");
    have(-200);
    EXPECT_EQ(ask("?1"), "1-      LLL g\r\n");
}
