#include "TraceText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using trace_text::Interpret;

struct Directive {
    const char* name;
    const char* text;
    const char* printed;
};

class TraceDirective : public testing::TestWithParam<Directive> {};

TEST_P(TraceDirective, Is_interpreted_without_an_argument) {
    EXPECT_EQ(Interpret(GetParam().text), GetParam().printed);
}

// The text around it comes out unchanged, whatever the directive does.
TEST_P(TraceDirective, Leaves_the_text_before_it) {
    EXPECT_EQ(Interpret((std::string("S S ") + GetParam().text).c_str()),
              std::string("S S ") + GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    Plain, TraceDirective,
    testing::Values(Directive{"Empty", "", ""},
                    Directive{"No_directive", "S S 1.00 g\r\n", "S S 1.00 g\r\n"},
                    Directive{"Percent", "%%", "%"}, Directive{"Percent_twice", "%%%%", "%%"},
                    Directive{"Percent_with_width", "[%5%]", "[%]"},
                    Directive{"Percent_ahead_of_n", "%%n", "%n"},
                    Directive{"Eighth_bit", "\xd3\xa0%d\xff",
                              "\xd3\xa0"
                              "0\xff"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Numbers, TraceDirective,
    testing::Values(
        Directive{"d", "[%d]", "[0]"}, Directive{"i", "[%i]", "[0]"}, Directive{"u", "[%u]", "[0]"},
        Directive{"o", "[%o]", "[0]"}, Directive{"x", "[%x]", "[0]"}, Directive{"X", "[%X]", "[0]"},
        Directive{"Width", "[%5d]", "[    0]"}, Directive{"Left", "[%-5d]", "[0    ]"},
        Directive{"Numbered_and_left", "[%1$-5d]", "[0    ]"},
        Directive{"Zeros", "[%05d]", "[00000]"}, Directive{"Precision", "[%.3d]", "[000]"},
        Directive{"Width_and_precision", "[%6.3d]", "[   000]"},
        Directive{"Precision_zero", "[%.0d]", "[]"},
        Directive{"Point_alone_is_precision_zero", "[%.d]", "[]"},
        Directive{"Plus", "[%+d]", "[+0]"}, Directive{"Plus_i", "[%+i]", "[+0]"},
        Directive{"Blank", "[% d]", "[ 0]"}, Directive{"Plus_unsigned", "[%+u]", "[0]"},
        Directive{"Alternate_octal", "[%#o]", "[0]"},
        Directive{"Alternate_hexadecimal", "[%#x]", "[0]"}, Directive{"Grouped", "[%'d]", "[0]"},
        Directive{"Other_digits", "[%Id]", "[0]"}, Directive{"hh", "[%hhd]", "[0]"},
        Directive{"ll", "[%lld]", "[0]"}, Directive{"z", "[%zu]", "[0]"},
        Directive{"j", "[%jd]", "[0]"}, Directive{"t", "[%td]", "[0]"},
        Directive{"L", "[%Ld]", "[0]"}, Directive{"q", "[%qd]", "[0]"},
        Directive{"f", "[%f]", "[0.000000]"}, Directive{"F", "[%.2F]", "[0.00]"},
        Directive{"lf", "[%.2lf]", "[0.00]"}, Directive{"Lf", "[%8.3Lf]", "[   0.000]"},
        Directive{"e", "[%e]", "[0.000000e+00]"}, Directive{"E", "[%.1E]", "[0.0E+00]"},
        Directive{"g", "[%g]", "[0]"}, Directive{"G", "[%#G]", "[0.00000]"},
        Directive{"a", "[%a]", "[0x0p+0]"}, Directive{"A", "[%A]", "[0X0P+0]"},
        Directive{"Plus_f", "[%+.1f]", "[+0.0]"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Arguments, TraceDirective,
    testing::Values(
        Directive{"s", "[%s]", "[]"}, Directive{"ls", "[%ls]", "[]"}, Directive{"S", "[%S]", "[]"},
        Directive{"c", "[%c]", "[]"}, Directive{"C", "[%C]", "[]"}, Directive{"lc", "[%lc]", "[]"},
        Directive{"m", "[%m]", "[]"}, Directive{"n", "[%n]", "[]"},
        Directive{"hhn", "[%hhn]", "[]"}, Directive{"lln", "[%lln]", "[]"},
        Directive{"n_with_width", "[%100n]", "[]"}, Directive{"n_by_number", "[%7$n]", "[]"},
        Directive{"p", "[%p]", "[(nil)]"}, Directive{"p_with_width", "[%10p]", "[     (nil)]"},
        Directive{"p_left", "[%-10p]", "[(nil)     ]"},
        Directive{"s_with_width", "[%5s]", "[     ]"}, Directive{"s_left", "[%-5s|]", "[     |]"},
        Directive{"s_with_precision", "[%.3s]", "[]"},
        Directive{"s_with_given_precision", "[%.*s]", "[]"},
        Directive{"s_by_number", "[%1$s]", "[]"}, Directive{"d_by_number", "[%12$d]", "[0]"},
        Directive{"d_by_number_with_width", "[%1$5d]", "[    0]"},
        Directive{"Given_width", "[%*d]", "[0]"},
        Directive{"Given_width_and_precision", "[%*.*f]", "[0]"},
        Directive{"Given_width_by_number", "[%1$*2$d]", "[0]"},
        Directive{"Many", "%s%n%d%p%s", "0(nil)"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Unknown, TraceDirective,
                         testing::Values(Directive{"Letter", "[%y]", "[%y]"},
                                         Directive{"Bracket", "[%]", "[%]"},
                                         Directive{"Blank_then_letter", "100% of", "1000f"},
                                         Directive{"Line_end", "5 %\r\n", "5 %\r\n"},
                                         Directive{"With_width", "[%12k]", "[%12k]"},
                                         Directive{"With_everything", "[%-+5.3lly]", "[%-+5.3lly]"},
                                         Directive{"Eighth_bit", "[%\xc4]", "[%\xc4]"},
                                         Directive{"Minus_alone", "[%-]", "[%-]"}),
                         [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    CutOff, TraceDirective,
    testing::Values(Directive{"Percent", "A%", "A"}, Directive{"Flag", "A%-", "A"},
                    Directive{"Width", "A%12", "A"}, Directive{"Star", "A%*", "A"},
                    Directive{"Point", "A%5.", "A"}, Directive{"Precision", "A%5.3", "A"},
                    Directive{"Precision_star", "A%.*", "A"}, Directive{"Size", "A%5.3ll", "A"},
                    Directive{"Number", "A%1$", "A"}, Directive{"After_others", "%d%s%", "0"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(TraceText, A_width_is_held_up_to_1023) {
    EXPECT_EQ(Interpret("%1023d"), std::string(1022, ' ') + "0");
}

TEST(TraceText, A_width_beyond_1023_counts_as_1023) {
    EXPECT_EQ(Interpret("%1024d"), std::string(1022, ' ') + "0");
    EXPECT_EQ(Interpret("%999999999d"), std::string(1022, ' ') + "0");
    EXPECT_EQ(Interpret("%99999999999999999999s"), std::string(1023, ' '));
}

TEST(TraceText, A_precision_beyond_1023_counts_as_1023) {
    EXPECT_EQ(Interpret("%.1024d"), std::string(1023, '0'));
    EXPECT_EQ(Interpret("%.2147483648f"), "0." + std::string(1023, '0'));
    EXPECT_EQ(Interpret("%1023.99999e"), "0." + std::string(1023, '0') + "e+00");
}

TEST(TraceText, A_line_of_1023_percent_signs_prints_511) {
    EXPECT_EQ(Interpret(std::string(1023, '%').c_str()), std::string(511, '%'));
}

TEST(TraceText, A_line_full_of_the_widest_directives_prints_them_all) {
    std::string text;
    for (int i = 0; i < 170; ++i)
        text += "%9999d";
    EXPECT_EQ(Interpret(text.c_str()).size(), 170U * 1023U);
}

TEST(TraceText, Every_byte_behind_a_percent_sign_prints_at_most_a_number_or_itself) {
    for (int byte = 1; byte < 256; ++byte) {
        const char text[] = {'<', '%', static_cast<char>(byte), '>', '\0'};
        const std::string printed = Interpret(text);
        EXPECT_EQ(printed.front(), '<') << byte;
        EXPECT_LE(printed.size(), 14U) << byte;
    }
}

// What noise on the line could be: no text ends the process, takes long or prints without bound.
// The sanitizers watch the memory.
TEST(TraceText, Noise_made_of_pieces_of_directives_is_interpreted) {
    constexpr const char* kPieces[] = {"%", "%", "n",  "s",  "d", "1",  "9",  "0",  "$",
                                       "*", ".", "ll", "hh", "-", "+",  " ",  "#",  "'",
                                       "I", "p", "c",  "e",  "y", "\r", "\n", "%n", "%s"};
    std::uint32_t state = 1;
    for (int text = 0; text < 20'000; ++text) {
        std::string noise;
        for (int piece = 0; piece < 12; ++piece) {
            state = state * 1664525U + 1013904223U;
            noise += kPieces[(state >> 16) % std::size(kPieces)];
        }
        EXPECT_LE(Interpret(noise.c_str()).size(), 7U * 2100U) << noise;
    }
}

}  // namespace
