#include "InstrumentTest.h"

using simulator::Instrument;
using simulator::Key;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

class DenverXl1800 : public InstrumentTest {
 protected:
    DenverXl1800() : InstrumentTest("denver-xl1800") {}
};

}  // namespace

TEST_F(DenverXl1800, A_request_without_a_line_end_is_answered_with_a_marked_line) {
    Have(12.34);
    EXPECT_EQ(Ask("?"), "");
    EXPECT_EQ(Ask("1"), "1+    12.34 g\r\n");
    Have(-12.34);
    EXPECT_EQ(Ask("?1"), "1-    12.34 g\r\n");
}

TEST_F(DenverXl1800, A_moving_pan_is_U) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("?1", 100ms), "U+    24.33 g\r\n");
}

TEST_F(DenverXl1800, T_tares_without_an_answer) {
    Have(12.34);
    EXPECT_EQ(Ask("T"), "");
    EXPECT_EQ(Ask("?1"), "1+     0.00 g\r\n");
}

TEST_F(DenverXl1800, A_tare_waits_for_the_pan_and_a_request_behind_it_is_answered_at_once) {
    Have(0);
    instrument_->Balance().SetLoad(50);
    EXPECT_EQ(Ask("T?1", 100ms), "U+    24.33 g\r\n");
    EXPECT_EQ(Ask("?1", 5s), "1+     0.00 g\r\n");
}

TEST_F(DenverXl1800, What_it_does_not_know_is_ignored) {
    Have(1);
    EXPECT_EQ(Ask("X\r\n?X?1"), "1+     1.00 g\r\n");
}

TEST_F(DenverXl1800, A_gap_splits_the_line_behind_its_first_character) {
    Have(12.34, {"gap=300ms"});
    EXPECT_EQ(Ask("?1"), "1");
    EXPECT_EQ(AnswersUntil(299ms), "");
    EXPECT_EQ(AnswersUntil(300ms), "+    12.34 g\r\n");
}

TEST_F(DenverXl1800, A_relatives_line_has_a_blank_between_status_and_sign) {
    Have(0, {"form=spaced", "readability=0.0001"});
    EXPECT_EQ(Ask("?1"), "1 +    0.0000\r\n");
}

TEST_F(DenverXl1800, An_echo_stands_ahead_of_the_line) {
    Have(12.34, {"echo", "form=bare"});
    EXPECT_EQ(Ask("?1"), "?1+     12.34\r\n");
}

TEST_F(DenverXl1800, The_time_of_day_can_stand_ahead_of_the_line) {
    Have(12.34, {"time-line"});
    EXPECT_EQ(Ask("?1"), "09:10:37\r\n1+    12.34 g\r\n");
}

TEST_F(DenverXl1800, Letters_take_the_place_of_a_number_out_of_range) {
    Have(2000);
    EXPECT_EQ(Ask("?1"), "1+      HHH g\r\n");
    Have(-200);
    EXPECT_EQ(Ask("?1"), "1-      LLL g\r\n");
}

TEST_F(DenverXl1800, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "1+    12.50 g\r\n");
}
