#include "readings/MtSics.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class MtSics : public testing::TestWithParam<AnswerCase> {};

TEST_P(MtSics, Is_read_as_meant) {
    ExpectReading(tool::ReadMtSics, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "S S     100.00 g\r\n", Meaning::Weight, "100.00", "g", Stability::Stable},
    {"dynamic", "S D     100.03 g\r\n", Meaning::Weight, "100.03", "g", Stability::Dynamic},
    {"negative", "S S     -12.345 g\r\n", Meaning::Weight, "-12.345", "g", Stability::Stable},
    {"kilograms", "S S     1.2345 kg\r\n", Meaning::OtherUnit, "1.2345", "kg", Stability::Stable},
    {"milligrams", "S D      12.3 mg\r\n", Meaning::OtherUnit, "12.3", "mg", Stability::Dynamic},
    {"without_a_unit", "S S      12.3\r\n", Meaning::OtherUnit, "12.3", "", Stability::Stable},
    {"behind_the_reset_answer", "I4 A \"1126493049\"\r\nS S     100.00 g\r\n", Meaning::Weight,
     "100.00", "g", Stability::Stable},
    {"reset_answer_alone", "I4 A \"1126493049\"\r\n", Meaning::NotUnderstood, "", ""},
    {"busy", "S I\r\n", Meaning::NotStable, "", ""},
    {"overload", "S +\r\n", Meaning::Overload, "", ""},
    {"underload", "S -\r\n", Meaning::Underload, "", ""},
    {"syntax_error", "ES\r\n", Meaning::InstrumentError, "", ""},
    {"transmission_error", "ET\r\n", Meaning::InstrumentError, "", ""},
    {"logical_error", "EL\r\n", Meaning::InstrumentError, "", ""},
    {"parameter_error", "S L\r\n", Meaning::InstrumentError, "", ""},
    {"tare_answer", "T S     100.00 g\r\n", Meaning::NotUnderstood, "", ""},
    {"cut_off_before_the_number", "S S     \r\n", Meaning::NotUnderstood, "", ""},
    {"two_points", "S S     1.2.3 g\r\n", Meaning::NotUnderstood, "", ""},
    {"noise", "\x81\xd3\x12", Meaning::NotUnderstood, "", ""},
    {"cut_within_the_number", "S S     100.0", Meaning::Truncated, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, MtSics, testing::ValuesIn(kCases), NameOf);

}  // namespace
