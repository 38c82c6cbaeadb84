#include "doctor/Explanation.h"

#include <gmock/gmock.h>

#include "Examples.h"
#include "Facts.h"

using examples::kBalance;
using testing::HasSubstr;

namespace {

// 2400,8N1
tool::LineSettings Line() {
    tool::LineSettings settings;
    settings.baudRate = 2400;
    return settings;
}

std::string Explanation(const std::string& answer, const std::string& command = "SI\r\n") {
    const tool::DriverInfo& driver = tool::FindDriver(kBalance);
    return SentenceFor(
        tool::ExplainAnswer(driver, Line(), command, {driver.interpret(answer), answer, {}}));
}

TEST(Explanation, Seven_bits_with_parity_read_as_eight_are_recognised) {
    EXPECT_THAT(Explanation("\x53\xa0\x53\xa0\xb1\xb2\x2e\xb1\xa0\xe7\x8d\x0a"),
                HasSubstr("use --line 2400,7E1 (or 7O1)"));
}

TEST(Explanation, Other_garbage_is_a_wrong_baud_rate) {
    EXPECT_THAT(Explanation("\x80\x9f\x01\xfe"), HasSubstr("the baud rate is not that"));
}

TEST(Explanation, An_echo_is_recognised) {
    EXPECT_THAT(Explanation("SI\r\n"), HasSubstr("what is sent comes back"));
}

TEST(Explanation, Another_instrument_is_recognised_and_named) {
    for (const auto& one : facts::All()) {
        for (const auto& answer : one.ownAnswers)
            EXPECT_THAT(Explanation(answer), HasSubstr("try --driver " + one.name));
    }
}

TEST(Explanation, An_answer_without_its_end_is_recognised) {
    EXPECT_THAT(Explanation("S S     "), HasSubstr("no line end"));
}

TEST(Explanation, Unknown_text_leads_to_detect) {
    EXPECT_THAT(Explanation("HELLO\r\n"), HasSubstr("`wbalance detect`"));
}

}  // namespace
