#include "simulator/instruments/scale-house.h"

#include "InstrumentTest.h"

using namespace std::chrono_literals;

namespace {

class ScaleHouse : public InstrumentTest {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        InstrumentTest::Have("scale-house", load, switches);
    }
};

TEST_F(ScaleHouse, Prints_a_ticket_with_gross_tare_and_net) {
    have(130.4);
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 130.40 g\r\n 0.00 g T\r\n 130.40 g N\r\n");
}

TEST_F(ScaleHouse, Tare_and_zero_are_not_answered) {
    have(50);
    EXPECT_EQ(Ask("T\r\n"), "");
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 50.00 g\r\n 50.00 g T\r\n 0.00 g N\r\n");
    have(5);
    EXPECT_EQ(Ask("Z\r\n"), "");
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n");
}

TEST_F(ScaleHouse, Tickets_may_have_other_lines) {
    have(130.4, {"ticket=no-net-line"});
    EXPECT_EQ(Ask("P\r\n"), "PROJ 12\r\n 130.40 g\r\n 0.00 g T\r\n");
    have(130.4, {"ticket=tare-line-first"});
    EXPECT_EQ(Ask("P\r\n"), " 0.00 g T\r\n 130.40 g\r\n");
    have(12.34, {"ticket=net-word"});
    EXPECT_EQ(Ask("P\r\n"), " 12.34 g NET\r\n");
    have(207.8, {"ticket=total-word"});
    EXPECT_EQ(Ask("P\r\n"), " 207.80 g TOTAL\r\n");
    have(130.4, {"ticket=net-line-only"});
    EXPECT_EQ(Ask("P\r\n"), " 130.40 g N\r\n");
    have(130.4, {"ticket=net-line-only", "wide-gap"});
    EXPECT_EQ(Ask("P\r\n"), " 130.40  g N\r\n");
}

TEST_F(ScaleHouse, Zero_and_tare_may_print_a_ticket_too) {
    have(5, {"ticket=net-line-only", "prints-after-tare"});
    EXPECT_EQ(Ask("Z\r\nT\r\n"), " 0.00 g N\r\n 0.00 g N\r\n");
}

TEST_F(ScaleHouse, Loads_out_of_range_print_no_weight) {
    have(610.01);
    EXPECT_EQ(Ask("P\r\n"), "ERR\r\n");
}

TEST_F(ScaleHouse, Unknown_commands_get_no_answer) {
    have(1);
    EXPECT_EQ(Ask("X\r\n\r\n"), "");
}

}  // namespace
