#include "InstrumentTest.h"

using simulator::Key;

namespace {

class MettlerPr2003 : public InstrumentTest {
 protected:
    MettlerPr2003() : InstrumentTest("mettler-pr2003") {}
};

}  // namespace

TEST_F(MettlerPr2003, Shows_its_own_decimals_at_its_own_settings) {
    Have(12.3456);
    EXPECT_EQ(Ask("S\r\n"), "S S     12.346 g\r\n");
    EXPECT_EQ(simulator::FindInstrument("mettler-pr2003").line.Text(), "2400,7E1");
}

TEST_F(MettlerPr2003, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "S S     12.500 g\r\n");
}
