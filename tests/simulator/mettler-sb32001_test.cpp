#include "InstrumentTest.h"

using simulator::Key;

namespace {

class MettlerSb32001 : public InstrumentTest {
 protected:
    MettlerSb32001() : InstrumentTest("mettler-sb32001") {}
};

}  // namespace

TEST_F(MettlerSb32001, Shows_its_own_decimals_at_its_own_settings) {
    Have(12.3456);
    EXPECT_EQ(Ask("S\r\n"), "S S       12.3 g\r\n");
    EXPECT_EQ(simulator::FindInstrument("mettler-sb32001").line.Text(), "2400,7E1");
}

TEST_F(MettlerSb32001, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "S S       12.5 g\r\n");
}
