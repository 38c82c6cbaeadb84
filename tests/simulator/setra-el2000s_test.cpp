#include "InstrumentTest.h"

using simulator::Instrument;
using simulator::Key;
using simulator::Time;
using namespace std::chrono_literals;

namespace {

/// An EL-2000S in virtual time: what it is asked, what it answers, to the byte. What it shares with
/// the XL-1800 is tested there.
class SetraEl2000s : public InstrumentTest {
 protected:
    SetraEl2000s() : InstrumentTest("setra-el2000s") {}
};

}  // namespace

TEST_F(SetraEl2000s, A_single_character_is_answered_with_a_marked_line) {
    Have(12.34);
    EXPECT_EQ(Ask("#"), "1+    12.34 g\r\n");
    Have(-12.34);
    EXPECT_EQ(Ask("##"), "1-    12.34 g\r\n1-    12.34 g\r\n");
}

TEST_F(SetraEl2000s, A_moving_pan_is_U) {
    Have(0);
    instrument_->Balance().SetLoad(-50);
    EXPECT_EQ(Ask("#", 100ms), "U-    24.33 g\r\n");
}

TEST_F(SetraEl2000s, T_tares_without_an_answer) {
    Have(12.34);
    EXPECT_EQ(Ask("T#"), "1+     0.00 g\r\n");
}

TEST_F(SetraEl2000s, The_EL_410S_tares_with_another_command) {
    Have(12.34, {"tare-command=$t"});
    EXPECT_EQ(Ask("T#"), "1+    12.34 g\r\n");
    EXPECT_EQ(Ask("$t#"), "1+     0.00 g\r\n");
}

TEST_F(SetraEl2000s, The_L_series_line_ends_in_mode_unit_and_a_character) {
    Have(12.34, {"form=l-series"});
    EXPECT_EQ(Ask("#"), "+  12.34 NG \r\n");
}

TEST_F(SetraEl2000s, Letters_take_the_place_of_a_number_out_of_range) {
    Have(3000);
    EXPECT_EQ(Ask("#"), "1+      HHH g\r\n");
    Have(-300);
    EXPECT_EQ(Ask("#"), "1-      LLL g\r\n");
}

TEST_F(SetraEl2000s, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "1+    12.50 g\r\n");
}
