#include "InstrumentTest.h"

using simulator::Key;

namespace {

class MettlerXs : public InstrumentTest {
 protected:
    MettlerXs() : InstrumentTest("mettler-xs") {}
};

}  // namespace

TEST_F(MettlerXs, Shows_its_own_decimals_at_its_own_settings) {
    Have(12.3456);
    EXPECT_EQ(Ask("S\r\n"), "S S    12.3456 g\r\n");
    EXPECT_EQ(simulator::FindInstrument("mettler-xs").line.Text(), "9600,8N1");
}

TEST_F(MettlerXs, The_print_key_sends_what_is_shown) {
    Have(12.5);
    EXPECT_EQ(Press(Key::Print), "S S    12.5000 g\r\n");
}
