#include "readings/Radwag.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Radwag : public testing::TestWithParam<AnswerCase> {};

TEST_P(Radwag, Is_read_as_meant) {
    ExpectReading(tool::ReadRadwag, GetParam());
}

const AnswerCase kCases[] = {
    {"stable_negative", "S    -      8.5 g  \r\n", Meaning::Weight, "-8.5", "g", Stability::Stable},
    {"stable_behind_the_acknowledgement", "S A\r\nS          12.345 g  \r\n", Meaning::Weight,
     "12.345", "g", Stability::Stable},
    {"immediate_moving_in_kilograms", "SI ?       18.5 kg \r\n", Meaning::OtherUnit, "18.5", "kg",
     Stability::Dynamic},
    {"immediate_moving", "SI ? -     18.5 g  \r\n", Meaning::Weight, "-18.5", "g",
     Stability::Dynamic},
    {"above_the_range", "S  ^      0.000 g  \r\n", Meaning::Overload, "", ""},
    {"below_the_range", "SI v      0.000 g  \r\n", Meaning::Underload, "", ""},
    {"in_progress", "S A\r\n", Meaning::NotStable, "", ""},
    {"not_accessible", "S I\r\n", Meaning::NotStable, "", ""},
    {"immediate_not_accessible", "SI I\r\n", Meaning::NotStable, "", ""},
    {"not_stable_in_time", "S A\r\nS E\r\n", Meaning::NotStable, "", ""},
    {"not_recognised", "ES\r\n", Meaning::InstrumentError, "", ""},
    {"cut_off_in_the_number", "S          12.3", Meaning::Truncated, "", ""},
    {"cut_off_before_the_number", "S     ", Meaning::NotUnderstood, "", ""},
    {"print_key", "^      0.000 kg\r\n", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Radwag, testing::ValuesIn(kCases), NameOf);

}  // namespace
