#include "readings/Pm.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Pm : public testing::TestWithParam<AnswerCase> {};

TEST_P(Pm, Is_read_as_meant) {
    ExpectReading(tool::ReadPm, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "S      -12.34 g\r\n", Meaning::Weight, "-12.34", "g", Stability::Stable},
    {"dynamic", "SD      12.34 g\r\n", Meaning::Weight, "12.34", "g", Stability::Dynamic},
    {"no_valid_value", "SI\r\n", Meaning::NotStable, "", ""},
    {"overload", "SI+\r\n", Meaning::Overload, "", ""},
    {"underload", "SI-\r\n", Meaning::Underload, "", ""},
    {"sics_stable", "S S      12.34 g\r\n", Meaning::Weight, "12.34", "g", Stability::Stable},
    {"sics_dynamic_that_the_driver_calls_stable", "S D      12.34 g\r\n", Meaning::Weight, "12.34",
     "g", Stability::Dynamic},
    {"sics_busy_that_the_driver_reads_as_zero", "S I\r\n", Meaning::NotStable, "", ""},
    {"sics_overload_that_the_driver_reads_as_zero", "S +\r\n", Meaning::Overload, "", ""},
    {"sics_underload_that_the_driver_reads_as_zero", "S -\r\n", Meaning::Underload, "", ""},
    {"ounces", "S       1.234 oz\r\n", Meaning::OtherUnit, "1.234", "oz", Stability::Stable},
    {"cut_within_the_number", "S       12.3", Meaning::Truncated, "", ""},
    {"syntax_error", "ES\r\n", Meaning::InstrumentError, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Pm, testing::ValuesIn(kCases), NameOf);

}  // namespace
