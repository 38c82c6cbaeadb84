#include "simulator/line/UartSettings.h"

#include <gtest/gtest.h>

using simulator::FlowControl;
using simulator::Parity;
using simulator::UartSettings;

TEST(UartSettings, Reads_baud_rate_data_bits_parity_and_stop_bits) {
    const auto settings = UartSettings::Parse("2400,7E1");
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->baudRate, 2400);
    EXPECT_EQ(settings->dataBits, 7);
    EXPECT_EQ(settings->parity, Parity::Even);
    EXPECT_EQ(settings->stopBits, 1);
    EXPECT_EQ(settings->flowControl, FlowControl::None);
}

TEST(UartSettings, Reads_a_blank_small_letters_and_flow_control) {
    EXPECT_EQ(UartSettings::Parse("9600 8n1"), UartSettings::Parse("9600,8N1"));
    EXPECT_EQ(UartSettings::Parse("600,7M2,rtscts")->flowControl, FlowControl::Hardware);
    EXPECT_EQ(UartSettings::Parse("600,7S2,xonxoff")->flowControl, FlowControl::Software);
}

TEST(UartSettings, Refuses_what_no_line_has) {
    for (const char* text : {"", "9600", "0,8N1", "9600,9N1", "9600,8X1", "9600,8N3", "9600,8N1,x",
                             " 9600,8N1", "-9600,8N1"})
        EXPECT_FALSE(UartSettings::Parse(text)) << text;
}

TEST(UartSettings, Writes_what_it_reads) {
    for (const char* text : {"2400,7E1", "1200,7O1", "1200,8N2", "600,7M1,rtscts", "12345,5S2"})
        EXPECT_EQ(UartSettings::Parse(text)->Text(), text);
}

TEST(UartSettings, A_character_of_7E1_takes_ten_bits_and_of_8N2_eleven) {
    EXPECT_EQ(UartSettings::Parse("2400,7E1")->BitsPerCharacter(), 10);
    EXPECT_EQ(UartSettings::Parse("1200,8N2")->BitsPerCharacter(), 11);
}
