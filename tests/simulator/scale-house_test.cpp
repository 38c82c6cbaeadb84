#include "InstrumentTest.h"

using simulator::Key;
using namespace std::chrono_literals;

namespace {

class ScaleHouse : public InstrumentTest {
 protected:
    ScaleHouse() : InstrumentTest("scale-house") {}
};

TEST_F(ScaleHouse, Prints_a_ticket_with_gross_tare_and_net) {
    Have(130.4);
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 130.40 g\r\n 0.00 g T\r\n 130.40 g N\r\n");
}

TEST_F(ScaleHouse, Tare_and_zero_are_not_answered) {
    Have(50);
    EXPECT_EQ(Ask("T\r\n"), "");
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 50.00 g\r\n 50.00 g T\r\n 0.00 g N\r\n");
    Have(5);
    EXPECT_EQ(Ask("Z\r\n"), "");
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n");
}

TEST_F(ScaleHouse, Tickets_may_have_other_lines) {
    Have(130.4, {"ticket=no-net-line"});
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 130.40 g\r\n 0.00 g T\r\n");
    Have(130.4, {"ticket=tare-line-first"});
    EXPECT_EQ(Ask("P\r\n"), " 0.00 g T\r\n 130.40 g\r\n");
    Have(12.34, {"ticket=net-word"});
    EXPECT_EQ(Ask("P\r\n"), " 12.34 g NET\r\n");
    Have(207.8, {"ticket=total-word"});
    EXPECT_EQ(Ask("P\r\n"), " 207.80 g TOTAL\r\n");
    Have(130.4, {"ticket=net-line-only"});
    EXPECT_EQ(Ask("P\r\n"), " 130.40 g N\r\n");
    Have(130.4, {"ticket=net-line-only", "wide-gap"});
    EXPECT_EQ(Ask("P\r\n"), " 130.40  g N\r\n");
}

TEST_F(ScaleHouse, Zero_and_tare_may_print_a_ticket_too) {
    Have(5, {"ticket=net-line-only", "prints-after-tare"});
    EXPECT_EQ(Ask("Z\r\nT\r\n"), " 0.00 g N\r\n 0.00 g N\r\n");
}

TEST_F(ScaleHouse, Loads_out_of_range_print_no_weight) {
    Have(610.01);
    EXPECT_EQ(Ask("P\r\n"), "ERR\r\n");
}

TEST_F(ScaleHouse, Unknown_commands_get_no_answer) {
    Have(1);
    EXPECT_EQ(Ask("X\r\n\r\n"), "");
}

TEST_F(ScaleHouse, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "PROJ 12\r\n 12.50 g\r\n 0.00 g T\r\n 12.50 g N\r\n");
}

}  // namespace
