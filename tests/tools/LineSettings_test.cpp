#include "line/LineSettings.h"

#include <gmock/gmock.h>

#include "ToolError.h"

using tool::LineSettings;

namespace {

const LineSettings kMettler{2400, 7, 2, 0, 0};

TEST(LineSettings, A_baud_rate_alone_keeps_the_character_format) {
    EXPECT_EQ(LineSettings::Parse("9600", kMettler).Text(), "9600,7E1");
}

TEST(LineSettings, A_character_format_gives_the_codes_of_the_library) {
    const auto settings = LineSettings::Parse("1200,8N2", kMettler);
    EXPECT_EQ(settings.baudRate, 1200);
    EXPECT_EQ(settings.dataBits, 8);
    EXPECT_EQ(settings.parity, 0);
    EXPECT_EQ(settings.stopBits, 2);
    EXPECT_EQ(settings.flowControl, 0);
}

TEST(LineSettings, Every_parity_has_its_letter_in_either_case) {
    EXPECT_EQ(LineSettings::Parse("9600,7o1", kMettler).parity, 1);
    EXPECT_EQ(LineSettings::Parse("9600,7E1", kMettler).parity, 2);
    EXPECT_EQ(LineSettings::Parse("9600,7M1", kMettler).parity, 3);
    EXPECT_EQ(LineSettings::Parse("9600,7S1", kMettler).parity, 4);
}

TEST(LineSettings, A_dash_leaves_the_parity_of_the_port) {
    EXPECT_EQ(LineSettings::Parse("9600,7-1", kMettler).parity, 1024);
}

TEST(LineSettings, Flow_control_may_follow_the_format_or_the_baud_rate) {
    EXPECT_EQ(LineSettings::Parse("9600,8N1,rtscts", kMettler).flowControl, 3);
    EXPECT_EQ(LineSettings::Parse("9600,xonxoff", kMettler).flowControl, 16);
    EXPECT_EQ(LineSettings::Parse("9600,8N1,xonxoff", kMettler).Text(), "9600,8N1,xonxoff");
}

TEST(LineSettings, One_and_a_half_stop_bits_are_code_1) {
    EXPECT_EQ(LineSettings::Parse("50,8N1.5", kMettler).stopBits, 1);
}

TEST(LineSettings, Other_texts_are_refused) {
    for (const char* text : {"", "7E1", "0", "-1", "2400,9N1", "2400,7X1", "2400,7E3",
                             "2400,7E1,on", "2400,7E1 ", "123456789"}) {
        EXPECT_THROW(LineSettings::Parse(text, kMettler), tool::ToolError) << text;
    }
}

}  // namespace
