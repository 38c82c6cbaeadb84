#include "OutsideText.h"

#include <gmock/gmock.h>

using outside::Printable;
using outside::PrintableLines;

namespace {

TEST(OutsideText, What_can_be_shown_stays_as_it_is) {
    EXPECT_EQ(Printable(""), "");
    EXPECT_EQ(Printable(" 12.34 g \\ \"~"), " 12.34 g \\ \"~");
    EXPECT_EQ(Printable("Prüfung 天秤 µg \U0001f600"), "Prüfung 天秤 µg \U0001f600");
}

TEST(OutsideText, Controls_are_written_as_in_a_record) {
    EXPECT_EQ(Printable("\x1b[2J\a\t\r\n\x7f"), "\\x1b[2J\\x07\\x09\\r\\n\\x7f");
    EXPECT_EQ(Printable(std::string("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(Printable("\u0080\u009b31m"), "\\xc2\\x80\\xc2\\x9b31m");
}

TEST(OutsideText, What_is_no_UTF_8_is_written_byte_for_byte) {
    EXPECT_EQ(Printable("\x9b"), "\\x9b");
    EXPECT_EQ(Printable("12 \xb5g"), "12 \\xb5g");
    EXPECT_EQ(Printable("\xc0\xaf"), "\\xc0\\xaf") << "a slash in too many bytes";
    EXPECT_EQ(Printable("\xe2\x82"), "\\xe2\\x82") << "cut off";
    EXPECT_EQ(Printable("\xe2\x82x"), "\\xe2\\x82x") << "cut off ahead of a letter";
    EXPECT_EQ(Printable("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "half of a pair";
    EXPECT_EQ(Printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond Unicode";
    EXPECT_EQ(Printable("\xff\xfe"), "\\xff\\xfe");
}

TEST(OutsideText, What_moves_or_hides_text_is_written_byte_for_byte) {
    EXPECT_EQ(Printable("a\u202eb"), "a\\xe2\\x80\\xaeb") << "right to left";
    EXPECT_EQ(Printable("\u2066\u2069"), "\\xe2\\x81\\xa6\\xe2\\x81\\xa9") << "isolates";
    EXPECT_EQ(Printable("\u2028\u2029"), "\\xe2\\x80\\xa8\\xe2\\x80\\xa9") << "separators";
    EXPECT_EQ(Printable("\u200b\ufeff"), "\\xe2\\x80\\x8b\\xef\\xbb\\xbf") << "zero width";
    EXPECT_EQ(Printable("\U000e0041"), "\\xf3\\xa0\\x81\\x81") << "a tag";
}

TEST(OutsideText, Done_twice_it_is_as_done_once) {
    const std::string once = Printable("\x1b\\\xff\r\n ü");
    EXPECT_EQ(once, "\\x1b\\\\xff\\r\\n ü");
    EXPECT_EQ(Printable(once), once);
}

TEST(OutsideText, Of_several_lines_the_line_ends_stay_and_a_lone_return_does_not) {
    EXPECT_EQ(PrintableLines("<== S\r\n ... OK\n\n"), "<== S\r\n ... OK\n\n");
    EXPECT_EQ(PrintableLines("a\rb\r\r\n\x1b\v"), "a\\rb\\r\r\n\\x1b\\x0b");
}

}  // namespace
