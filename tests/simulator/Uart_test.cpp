#include "simulator/line/Uart.h"

#include <gtest/gtest.h>

using simulator::Character;
using simulator::Transmit;
using simulator::UartSettings;

namespace {

std::vector<Character> Sent(const std::string& bytes, const char* sender, const char* receiver) {
    return Transmit(bytes, *UartSettings::Parse(sender), *UartSettings::Parse(receiver));
}

std::string BytesOf(const std::vector<Character>& characters) {
    std::string bytes;
    for (const auto& character : characters)
        bytes += character.byte;
    return bytes;
}

/// One letter per character: "." whole, "P" wrong parity, "F" no stop bit.
std::string FlawsOf(const std::vector<Character>& characters) {
    std::string flaws;
    for (const auto& character : characters)
        flaws += character.framingError ? 'F' : character.parityError ? 'P' : '.';
    return flaws;
}

}  // namespace

TEST(Uart, Equal_settings_pass_every_byte_unchanged) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const char* settings : {"9600,8N1", "600,8E1", "1200,8N2", "9600,8M1", "12345,8S2"}) {
        EXPECT_EQ(BytesOf(Sent(bytes, settings, settings)), bytes);
        EXPECT_EQ(FlawsOf(Sent(bytes, settings, settings)), std::string(256, '.'));
    }
}

TEST(Uart, Seven_data_bits_lose_the_eighth) {
    EXPECT_EQ(BytesOf(Sent("\xC1", "9600,7E1", "9600,7E1")), "A");
}

// 'A' is 41h, bits 1000001: two ones. 'C' is 43h, bits 1100001: three ones.
TEST(Uart, A_host_at_8N1_reads_the_parity_bit_of_7E1_as_bit_seven) {
    EXPECT_EQ(BytesOf(Sent("AC", "2400,7E1", "2400,8N1")), "A\xC3");
    EXPECT_EQ(BytesOf(Sent("AC", "2400,7O1", "2400,8N1")),
              "\xC1"
              "C");
    EXPECT_EQ(BytesOf(Sent("AC", "2400,7M1", "2400,8N1")), "\xC1\xC3");
    EXPECT_EQ(BytesOf(Sent("AC", "2400,7S1", "2400,8N1")), "AC");
    EXPECT_EQ(FlawsOf(Sent("AC", "2400,7E1", "2400,8N1")), "..");
}

TEST(Uart, An_instrument_at_7E1_finds_wrong_parity_where_8N1_has_an_odd_number_of_ones) {
    const auto characters = Sent("AC", "2400,8N1", "2400,7E1");
    EXPECT_EQ(BytesOf(characters), "AC");
    EXPECT_EQ(FlawsOf(characters), ".P");
}

TEST(Uart, Odd_parity_read_as_even_is_wrong_for_every_character) {
    EXPECT_EQ(FlawsOf(Sent("S\r\n", "2400,7O1", "2400,7E1")), "PPP");
    EXPECT_EQ(BytesOf(Sent("S\r\n", "2400,7O1", "2400,7E1")), "S\r\n");
}

TEST(Uart, The_number_of_stop_bits_does_not_matter) {
    EXPECT_EQ(BytesOf(Sent("+ 12.50 G S", "1200,8N2", "1200,8N1")), "+ 12.50 G S");
    EXPECT_EQ(FlawsOf(Sent("+ 12.50 G S", "1200,8N2", "1200,8N1")), "...........");
    EXPECT_EQ(BytesOf(Sent("+ 12.50 G S", "1200,8N1", "1200,8N2")), "+ 12.50 G S");
    EXPECT_EQ(FlawsOf(Sent("+ 12.50 G S", "1200,8N1", "1200,8N2")), "...........");
}

// A start bit of 2400 baud lasts as long as four bits of 9600 baud: start, and three zero data
// bits; bit 0 of 'U' (55h, 1 0 1 0 1 0 1 0) fills data bits 3 to 6, bit 1 the rest and the stop.
TEST(Uart, A_receiver_four_times_too_fast_reads_rubbish) {
    const auto characters = Sent("U", "2400,8N1", "9600,8N1");
    ASSERT_GE(characters.size(), 1u);
    EXPECT_EQ(static_cast<unsigned char>(characters[0].byte), 0x78);
    EXPECT_TRUE(characters[0].framingError);
}

// Two characters of 9600 baud, each ten bits, fit into five bits of 2400 baud.
TEST(Uart, A_receiver_four_times_too_slow_reads_fewer_characters) {
    EXPECT_EQ(Sent("S\r\nS\r\n", "9600,8N1", "2400,8N1").size(), 2u);
}

TEST(Uart, A_rate_off_by_two_percent_still_reads_well) {
    EXPECT_EQ(BytesOf(Sent("S S     100.00 g\r\n", "9600,8N1", "9792,8N1")),
              "S S     100.00 g\r\n");
}
