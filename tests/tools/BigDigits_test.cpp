#include "monitor/BigDigits.h"

#include <gmock/gmock.h>

#include "monitor/LiveDisplay.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

TEST(BigDigits, Look_like_a_balances_display) {
    EXPECT_THAT(tool::BigDigits("-12.3"), ElementsAre("       _   _ ",  //
                                                      " _   | _|  _|",  //
                                                      "     ||_ . _|"));
}

TEST(LiveDisplay, A_lost_balance_does_not_show_its_old_weight) {
    tool::DisplayedBalance balance;
    balance.name = "radwag /dev/ttyUSB0";
    balance.received = true;
    balance.reading.meaning = tool::Meaning::Weight;
    balance.reading.digits = "12.34";
    balance.reading.unit = "g";
    balance.lost = "unplugged";

    const auto lines = tool::LinesFor(balance);

    EXPECT_THAT(lines, Contains("  LOST: unplugged"));
    EXPECT_THAT(lines[3], Not(HasSubstr("g")));
}

TEST(LiveDisplay, An_overload_is_said_in_words) {
    tool::DisplayedBalance balance;
    balance.received = true;
    balance.reading.meaning = tool::Meaning::Overload;
    EXPECT_THAT(tool::LinesFor(balance)[4], HasSubstr("overload"));
}

}  // namespace
