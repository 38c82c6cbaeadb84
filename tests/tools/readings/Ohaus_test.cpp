#include "readings/Ohaus.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Ohaus : public testing::TestWithParam<AnswerCase> {};

TEST_P(Ohaus, Is_read_as_meant) {
    ExpectReading(tool::ReadOhaus, GetParam());
}

const AnswerCase kCases[] = {
    {"scout_pro_stable", "       12.73 g      \r\n", Meaning::Weight, "12.73", "g",
     Stability::Stable},
    {"scout_pro_moving", "       12.73 g    ?\r\n", Meaning::Weight, "12.73", "g",
     Stability::Dynamic},
    {"wide_model_moving", "        311 g ?\r\n", Meaning::Weight, "311", "g", Stability::Dynamic},
    {"explorer", "    192.21 g\r\n", Meaning::Weight, "192.21", "g", Stability::Stable},
    {"negative", "     -0.01 g\r\n", Meaning::Weight, "-0.01", "g", Stability::Stable},
    {"kilograms_taken_for_grams", "      0.500 kg\r\n", Meaning::OtherUnit, "0.500", "kg",
     Stability::Stable},
    {"milligrams", "     500.0 mg\r\n", Meaning::OtherUnit, "500.0", "mg", Stability::Stable},
    {"ounces", "     1.234 oz\r\n", Meaning::OtherUnit, "1.234", "oz", Stability::Stable},
    {"numeric_only", "     12.73\r\n", Meaning::OtherUnit, "12.73", "", Stability::Stable},
    {"accumulated_total", "    207.80 g TOTAL\r\n", Meaning::NotUnderstood, "", ""},
    {"time_behind", "    192.21 g   12:30:05\r\n", Meaning::Weight, "192.21", "g",
     Stability::Stable},
    {"beginning_missing", "0.73 g\r\n    100.73 g\r\n", Meaning::Truncated, "", ""},
    {"not_in_time", "ES\r\n", Meaning::InstrumentError, "", ""},
    {"pounds_and_ounces", "     1:2.3 lb:oz\r\n", Meaning::NotUnderstood, "", ""},
    {"cut_within_the_number", "       12.7", Meaning::Truncated, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Ohaus, testing::ValuesIn(kCases), NameOf);

}  // namespace
