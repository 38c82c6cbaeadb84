#include "readings/SignedReading.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class SignedReading : public testing::TestWithParam<AnswerCase> {};

TEST_P(SignedReading, Is_read_as_meant) {
    ExpectReading(tool::ReadSignedReading, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "1+   12.34 g\r\n", Meaning::Weight, "12.34", "g", Stability::Stable},
    {"moving_negative", "U-    0.50 g\r\n", Meaning::Weight, "-0.50", "g", Stability::Dynamic},
    {"without_a_unit", "1+   12.34\r\n", Meaning::Weight, "12.34", "", Stability::Stable},
    {"ounces", "1+   12.34 oz\r\n", Meaning::OtherUnit, "12.34", "oz", Stability::Stable},
    {"echo_that_looks_like_a_mark", "?1+   12.34\r\n", Meaning::NotUnderstood, "", ""},
    {"mark_within_a_number", "21+   12.34\r\n", Meaning::NotUnderstood, "", ""},
    {"another_model", "1 +    0.0000\r\n", Meaning::NotUnderstood, "", ""},
    {"overload", "1+ HHHHHH G\r\n", Meaning::Overload, "", ""},
    {"pan_off", "1- LLLLLL G\r\n", Meaning::Underload, "", ""},
    {"cut_within_the_number", "1+   12.", Meaning::Truncated, "", ""},
    {"cut_behind_a_digit", "1+   12.3", Meaning::Truncated, "", ""},
    {"behind_noise", " M\x7f%<1+   12.34 g\r\n", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, SignedReading, testing::ValuesIn(kCases), NameOf);

}  // namespace
