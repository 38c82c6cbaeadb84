#include "readings/Gibertini.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Gibertini : public testing::TestWithParam<AnswerCase> {};

TEST_P(Gibertini, Is_read_as_meant) {
    ExpectReading(tool::ReadGibertini, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "    123.45 g   DS\r\n", Meaning::Weight, "123.45", "g", Stability::Stable},
    {"negative_moving", "   -123.45 g   DI\r\n", Meaning::Weight, "-123.45", "g",
     Stability::Dynamic},
    {"over_range", "    123.45 g   OS\r\n", Meaning::Overload, "", ""},
    {"under_range", "      0.00 g   US\r\n", Meaning::Underload, "", ""},
    {"taring_that_the_driver_takes_for_a_weight", "      0.00 g   TI\r\n", Meaning::Calibrating, "",
     ""},
    {"calibration", "      0.00 g   CS\r\n", Meaning::Calibrating, "", ""},
    {"zero_acquisition", "      0.00 g   ZI\r\n", Meaning::Calibrating, "", ""},
    {"initial_test", "      0.00 g   IS\r\n", Meaning::Calibrating, "", ""},
    {"error", "      0.00 g   DE\r\n", Meaning::InstrumentError, "", ""},
    {"kilograms", "   0.12345 kg  DS\r\n", Meaning::OtherUnit, "0.12345", "kg", Stability::Stable},
    {"euro_protocol", "    123.45\r\n", Meaning::NotUnderstood, "", ""},
    {"cut_off", "    123.45 g   D\r\n", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Gibertini, testing::ValuesIn(kCases), NameOf);

}  // namespace
