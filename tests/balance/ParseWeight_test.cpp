// The number in an answer, as the Mettler Toledo drivers extract it.

#include <cmath>

#include "PlainBalance.h"

namespace {

constexpr int kUntouched = -7;

struct Answer {
    const char* name;
    std::string text;
    double weight;
    int decimals;
};

class ParseWeight : public testing::TestWithParam<Answer> {
 protected:
    PlainBalance balance;
};

TEST_P(ParseWeight, Extracts_the_number_and_its_decimals) {
    std::string text = GetParam().text;
    int decimals = kUntouched;

    EXPECT_EQ(balance.ParseWeight(text.data(), &decimals), GetParam().weight);

    EXPECT_EQ(decimals, GetParam().decimals);
    EXPECT_EQ(text, GetParam().text);
}

TEST_P(ParseWeight, Extracts_the_number_also_without_a_place_for_the_decimals) {
    std::string text = GetParam().text;

    EXPECT_EQ(balance.ParseWeight(text.data(), nullptr), GetParam().weight);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ParseWeight,
    testing::Values(
        Answer{"Stable", "S S     100.00 g\r\n", 100.0, 2},
        Answer{"Stable_negative", "S S    -12.345 g", -12.345, 3},
        Answer{"Number_and_unit", "12.5 g", 12.5, 1},
        Answer{"Whole_number", "120 g", 120.0, kUntouched},
        Answer{"Digits_alone", "7", 7.0, kUntouched},
        Answer{"Point_at_the_end", "120. g", 120.0, 0},
        Answer{"Unit_without_a_blank", "S S 1.5kg", 1.5, 1},
        Answer{"Minus_apart_from_the_digits", "S S   -  12.5 g", 12.5, 1},
        Answer{"Minus_at_the_very_start", "-5.25 g", -5.25, 2},
        Answer{"Plus", "S S    +12.5 g", 12.5, 1},
        Answer{"Plus_at_the_very_start", "+3 g", 3.0, kUntouched},
        Answer{"Two_minuses", "S S --4.5 g", -4.5, 1},
        Answer{"Point_before_the_first_digit", ".5", 5.0, kUntouched},
        Answer{"Minus_and_point_before_the_first_digit", "-.5 g", 5.0, kUntouched},
        Answer{"Two_points", "1.2.3", 1.2, 3}, Answer{"Two_points_together", "1..5", 1.0, 2},
        Answer{"Minus_within", "12-3", 12.0, kUntouched},
        Answer{"Minus_behind_the_point", "12.-3", 12.0, 2},
        Answer{"Minus_at_the_end", "12.5- g", 12.5, 2},
        Answer{"First_number_of_several", "I4 A \"1126493049\"\r\nS S 100.00 g", 4.0, kUntouched},
        Answer{"Number_in_the_identifier", "S1 S 12.5 g", 1.0, kUntouched},
        Answer{"Exponent_is_not_taken_along", "1e5", 1.0, kUntouched},
        Answer{"Hexadecimal_is_not_taken_along", "0x1F", 0.0, kUntouched},
        Answer{"Comma_ends_the_number", "12,5 g", 12.0, kUntouched},
        Answer{"Neighbours_of_the_digits_are_none", "S /:@ 1.25:3 g", 1.25, 2},
        Answer{"Leading_zeros", "S S 000.50 g", 0.5, 2},
        Answer{"No_digit", "S I\r\n", 0.0, kUntouched},
        Answer{"No_digit_but_a_point", "S . g", 0.0, kUntouched},
        Answer{"No_digit_and_a_minus_at_the_end", "S -", 0.0, kUntouched},
        Answer{"No_digit_and_a_minus_within", "S - g", 0.0, kUntouched},
        Answer{"Minus_alone", "-", 0.0, kUntouched},
        Answer{"Infinity", "S S inf g", 0.0, kUntouched}, Answer{"Empty", "", 0.0, kUntouched},
        Answer{"Digit_as_the_second_character", "x9", 9.0, kUntouched},
        Answer{"Eighth_bit", "\xd3\xa0-1.5\xe7", -1.5, 1},
        Answer{"Longest", std::string(95, ' ') + "-1.5", -1.5, 1},
        Answer{"Longest_of_digits", std::string(97, '0') + ".5", 0.5, 1}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ParseWeightOfNothing, Has_the_sign_of_a_lone_minus_nowhere) {
    PlainBalance balance;
    std::string text = "S -";

    EXPECT_FALSE(std::signbit(balance.ParseWeight(text.data(), nullptr)));
}

TEST(ParseWeightDeathTest, An_answer_of_100_characters_ends_the_process) {
    PlainBalance balance;
    std::string text = std::string(96, ' ') + "12.5";

    EXPECT_EXIT(balance.ParseWeight(text.data(), nullptr), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a weight answer does not fit its buffer of 100 bytes\n$");
}

}  // namespace
