#include "BoundedText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

using testing::KilledBySignal;

namespace {

TEST(BoundedText, A_copy_that_leaves_room_keeps_the_bytes_behind_its_zero) {
    char buffer[8];
    std::memset(buffer, '#', sizeof buffer);

    bounded_text::Copy(buffer, "abc", "a text");

    EXPECT_EQ(std::string(buffer, 8), std::string("abc\0####", 8));
}

TEST(BoundedText, A_copy_may_fill_the_buffer_with_its_zero_as_the_last_byte) {
    char buffer[5] = "####";

    bounded_text::Copy(buffer, 4, "abc", "a text");

    EXPECT_EQ(std::string(buffer, 5), std::string("abc\0\0", 5));
}

TEST(BoundedText, An_empty_text_fits_one_byte) {
    char buffer[1] = {'#'};

    bounded_text::Copy(buffer, "", "a text");

    EXPECT_EQ(buffer[0], '\0');
}

TEST(BoundedTextDeathTest, A_copy_one_character_too_long_ends_the_process_and_names_the_text) {
    char buffer[4];

    EXPECT_EXIT(bounded_text::Copy(buffer, "abcd", "a preset tare"), KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 4 bytes\n$");
}

TEST(BoundedTextDeathTest, Not_even_an_empty_text_fits_no_bytes) {
    char buffer[1] = {'#'};

    EXPECT_EXIT(bounded_text::Copy(buffer, 0, "", "a text"), KilledBySignal(SIGABRT),
                "^libwbalance: a text does not fit its buffer of 0 bytes\n$");
}

TEST(BoundedTextDeathTest, What_was_printed_before_the_end_of_the_process_reaches_its_file) {
    std::FILE* file = std::tmpfile();
    const auto end = [file] {
        stdout = file;
        std::fputs("Read from scale", stdout);
        bounded_text::EndProcess("a trace line", 1024);
    };

    EXPECT_EXIT(end(), KilledBySignal(SIGABRT), "^libwbalance: a trace line ");

    char text[32] = {};
    std::rewind(file);
    EXPECT_EQ(std::fread(text, 1, sizeof text, file), 15U);
    EXPECT_STREQ(text, "Read from scale");
    std::fclose(file);
}

TEST(BoundedText, A_format_may_come_out_empty) {
    char buffer[1] = {'#'};

    bounded_text::Format(buffer, sizeof buffer, "a text", "%s", "");

    EXPECT_EQ(buffer[0], '\0');
}

TEST(BoundedText, A_format_that_leaves_room_is_a_text) {
    char buffer[20];

    bounded_text::Format(buffer, sizeof buffer, "a device name", "/dev/ttyUSB%d", 7);

    EXPECT_STREQ(buffer, "/dev/ttyUSB7");
}

TEST(BoundedText, A_format_may_fill_the_buffer_with_its_zero_as_the_last_byte) {
    char buffer[6] = "#####";

    bounded_text::Format(buffer, 5, "a text", "%.2f", 1.25);

    EXPECT_EQ(std::string(buffer, 6), std::string("1.25\0\0", 6));
}

TEST(BoundedTextDeathTest, A_format_one_character_too_long_ends_the_process_and_names_the_text) {
    char buffer[5];

    EXPECT_EXIT(bounded_text::Format(buffer, sizeof buffer, "a preset tare", "%.2f", 12.5),
                KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 5 bytes\n$");
}

TEST(BoundedTextDeathTest, A_text_that_cannot_be_formatted_ends_the_process) {
    char buffer[64];
    // No character has this code, so that the conversion fails.
    constexpr wchar_t kNoCharacter[] = {static_cast<wchar_t>(0x7fffffff), L'\0'};

    EXPECT_EXIT(bounded_text::Format(buffer, sizeof buffer, "a text", "%ls", kNoCharacter),
                KilledBySignal(SIGABRT),
                "^libwbalance: a text does not fit its buffer of 64 bytes\n$");
}

}  // namespace
