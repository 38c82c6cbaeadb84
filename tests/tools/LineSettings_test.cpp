#include "line/LineSettings.h"

#include <gmock/gmock.h>
#include <wbalance/Cwbalance.h>

#include "ToolError.h"

using tool::LineSettings;

namespace {

// 2400,7E1
LineSettings Defaults() {
    LineSettings settings;
    settings.baudRate = 2400;
    settings.dataBits = 7;
    settings.parity = Cwbalance::ParityEven;
    return settings;
}

TEST(LineSettings, A_baud_rate_alone_keeps_the_character_format) {
    EXPECT_EQ(LineSettings::Parse("9600", Defaults()).Text(), "9600,7E1");
}

TEST(LineSettings, A_character_format_gives_the_codes_of_the_library) {
    const auto settings = LineSettings::Parse("1200,8N2", Defaults());
    EXPECT_EQ(settings.baudRate, 1200);
    EXPECT_EQ(settings.dataBits, 8);
    EXPECT_EQ(settings.parity, 0);
    EXPECT_EQ(settings.stopBits, 2);
    EXPECT_EQ(settings.flowControl, 0);
}

TEST(LineSettings, Every_parity_has_its_letter_in_either_case) {
    EXPECT_EQ(LineSettings::Parse("9600,7o1", Defaults()).parity, 1);
    EXPECT_EQ(LineSettings::Parse("9600,7E1", Defaults()).parity, 2);
    EXPECT_EQ(LineSettings::Parse("9600,7M1", Defaults()).parity, 3);
    EXPECT_EQ(LineSettings::Parse("9600,7S1", Defaults()).parity, 4);
}

TEST(LineSettings, A_dash_leaves_the_parity_of_the_port) {
    EXPECT_EQ(LineSettings::Parse("9600,7-1", Defaults()).parity, 1024);
}

TEST(LineSettings, Flow_control_may_follow_the_format_or_the_baud_rate) {
    EXPECT_EQ(LineSettings::Parse("9600,8N1,rtscts", Defaults()).flowControl, 3);
    EXPECT_EQ(LineSettings::Parse("9600,xonxoff", Defaults()).flowControl, 16);
    EXPECT_EQ(LineSettings::Parse("9600,8N1,xonxoff", Defaults()).Text(), "9600,8N1,xonxoff");
}

TEST(LineSettings, One_and_a_half_stop_bits_are_code_1) {
    EXPECT_EQ(LineSettings::Parse("50,8N1.5", Defaults()).stopBits, 1);
}

TEST(LineSettings, Other_texts_are_refused) {
    for (const char* text : {"", "7E1", "0", "-1", "2400,9N1", "2400,7X1", "2400,7E3",
                             "2400,7E1,on", "2400,7E1 ", "123456789"}) {
        EXPECT_THROW(LineSettings::Parse(text, Defaults()), tool::ToolError) << text;
    }
}

}  // namespace
