#include "monitor/BigDigits.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

TEST(BigDigits, Look_like_a_balances_display) {
    EXPECT_THAT(tool::BigDigits("-12.3"), ElementsAre("       _   _ ",  //
                                                      " _   | _|  _|",  //
                                                      "     ||_ . _|"));
}

}  // namespace
