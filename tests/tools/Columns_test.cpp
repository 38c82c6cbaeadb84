#include "output/Columns.h"

#include <gmock/gmock.h>

using tool::Cut;
using tool::CutInFront;

namespace {

TEST(Columns, A_wide_character_counts_twice_and_a_combining_one_not_at_all) {
    EXPECT_EQ(tool::WidthOf("Waage"), 5U);
    EXPECT_EQ(tool::WidthOf("für"), 3U);
    EXPECT_EQ(tool::WidthOf("fu\u0308r"), 3U);
    EXPECT_EQ(tool::WidthOf("天平"), 4U);
}

TEST(Columns, A_text_that_fits_stays_as_it_is) {
    EXPECT_EQ(Cut("天平 1", 6), "天平 1");
    EXPECT_EQ(CutInFront("天平 1", 6), "天平 1");
    EXPECT_EQ(Cut("", 0), "");
}

TEST(Columns, What_was_cut_off_is_marked_and_no_character_is_cut_in_half) {
    EXPECT_EQ(Cut("123456", 5), "1234>");
    EXPECT_EQ(Cut("天平天平", 5), "天平>");
    EXPECT_EQ(Cut("天平天平", 4), "天>");
    EXPECT_EQ(Cut("u\u0308u\u0308u\u0308", 2), "u\u0308>");
    EXPECT_EQ(CutInFront("123456", 5), "<3456");
    EXPECT_EQ(CutInFront("天平天平", 4), "<平");
    EXPECT_EQ(CutInFront("u\u0308u\u0308u\u0308", 2), "<u\u0308");
    EXPECT_EQ(Cut("12", 1), ">");
    EXPECT_EQ(CutInFront("u\u0308天", 1), "<");
    EXPECT_EQ(Cut("12", 0), "");
    EXPECT_EQ(CutInFront("12", 0), "");
}

TEST(Columns, What_a_terminal_would_obey_is_replaced) {
    EXPECT_EQ(Cut("a\x1b[2Jb\x9b", 20), "a?[2Jb?");
    EXPECT_EQ(CutInFront("\xc2\x9b\xff", 20), "??");
}

TEST(Columns, A_column_is_filled_with_blanks) {
    EXPECT_EQ(tool::Padded("天平", 6), "天平  ");
    EXPECT_EQ(tool::Padded("a-long-name", 6), "a-long-name");
}

}  // namespace
