#include "doctor/Doctor.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using tool::ExitCode;

namespace {

const tool::LineSettings kLine{2400, 8, 0, 0, 0};

tool::Diagnosis Diagnose(const std::string& answer, const std::string& command = "SI\r\n") {
    return tool::DiagnoseAnswer(tool::FindDriver("mettler-toledo"), kLine, command, answer);
}

TEST(Doctor, Seven_bits_with_parity_read_as_eight_are_recognised) {
    EXPECT_THAT(Diagnose("\x53\xa0\x53\xa0\xb1\xb2\x2e\xb1\xa0\xe7\x8d\x0a").sentence,
                HasSubstr("use --line 2400,7E1 (or 7O1)"));
}

TEST(Doctor, Other_garbage_is_a_wrong_baud_rate) {
    EXPECT_THAT(Diagnose("\x80\x9f\x01\xfe").sentence, HasSubstr("the baud rate is not that"));
    EXPECT_THAT(Diagnose("").sentence, HasSubstr("the baud rate is not that"));
}

TEST(Doctor, An_echo_is_recognised) {
    EXPECT_THAT(Diagnose("SI\r\n").sentence, HasSubstr("what is sent comes back"));
}

TEST(Doctor, Another_instrument_is_recognised_and_named) {
    EXPECT_THAT(Diagnose("+   123.56 g  \r\n").sentence, HasSubstr("try --driver sartorius"));
    EXPECT_THAT(Diagnose("SI ?       18.5 g  \r\n").sentence, HasSubstr("try --driver radwag"));
}

TEST(Doctor, An_answer_without_its_end_is_recognised) {
    EXPECT_THAT(Diagnose("S S     ").sentence, HasSubstr("no line end"));
}

TEST(Doctor, Unknown_text_leads_to_detect) {
    EXPECT_THAT(Diagnose("HELLO\r\n").sentence, HasSubstr("`wbalance detect`"));
}

}  // namespace
