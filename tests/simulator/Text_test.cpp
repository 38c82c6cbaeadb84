#include "simulator/Text.h"

#include <gtest/gtest.h>

#include "simulator/LoadStep.h"
#include "simulator/Time.h"

using simulator::CutAt;
using simulator::LoadStep;
using simulator::ParseNumber;
using simulator::ParseTime;
using simulator::ParseWholeNumber;
using namespace std::chrono_literals;

TEST(Text, Numbers_have_an_optional_sign_and_decimals) {
    EXPECT_EQ(ParseNumber("12"), 12.0);
    EXPECT_EQ(ParseNumber("-0.5"), -0.5);
    EXPECT_EQ(ParseNumber("+100.25"), 100.25);
    for (const char* text : {"", "-", "+-1", ".5", "1e3", "0x10", "nan", "inf", " 1", "1 ", "1,5"})
        EXPECT_FALSE(ParseNumber(text)) << text;
}

TEST(Text, Whole_numbers_keep_to_their_range) {
    EXPECT_EQ(ParseWholeNumber("0", 0, 9), 0);
    EXPECT_EQ(ParseWholeNumber("9", 0, 9), 9);
    for (const char* text : {"", "10", "-1", "+1", "1.0", "99999999999999999999"})
        EXPECT_FALSE(ParseWholeNumber(text, 0, 9)) << text;
}

TEST(Text, A_text_is_cut_at_the_first_separator) {
    EXPECT_EQ(CutAt("a=b=c", '=').first, "a");
    EXPECT_EQ(CutAt("a=b=c", '=').second, "b=c");
    EXPECT_EQ(CutAt("abc", '=').first, "abc");
    EXPECT_FALSE(CutAt("abc", '=').second);
}

TEST(Text, Times_are_seconds_or_milliseconds) {
    EXPECT_EQ(ParseTime("500ms"), 500ms);
    EXPECT_EQ(ParseTime("2s"), 2000ms);
    EXPECT_EQ(ParseTime("1.5s"), 1500ms);
    for (const char* text : {"", "5", "s", "-1s", "1.5.5s", "1min", "99999999999s"})
        EXPECT_FALSE(ParseTime(text)) << text;
}

TEST(Text, A_load_has_an_optional_time) {
    EXPECT_EQ(LoadStep::Parse("-12.5").grams, -12.5);
    EXPECT_EQ(LoadStep::Parse("-12.5").at, 0ms);
    EXPECT_EQ(LoadStep::Parse("100@1.5s").at, 1500ms);
    for (const char* text : {"", "heavy", "@5s", "1@", "1@5", "1@5s@6s"})
        EXPECT_THROW(LoadStep::Parse(text), std::invalid_argument) << text;
}
