#include "readings/Kern.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Kern : public testing::TestWithParam<AnswerCase> {};

TEST_P(Kern, Is_read_as_meant) {
    ExpectReading(tool::ReadKern, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "A00\r\n+  12.50 G S\r\n", Meaning::Weight, "12.50", "G", Stability::Stable},
    {"negative_moving", "A00\r\n-  12.50 G U\r\n", Meaning::Weight, "-12.50", "G",
     Stability::Dynamic},
    {"status_blank", "A00\r\n+  12.50 G  \r\n", Meaning::Weight, "12.50", "G"},
    {"record_ahead_of_the_acknowledgement", "+  12.50 G S\r\nA00\r\n", Meaning::Weight, "12.50",
     "G", Stability::Stable},
    {"record_in_error", "A00\r\n+   0.00 G E\r\n", Meaning::InstrumentError, "", ""},
    {"seven_digits", "A00\r\n+  12.345 G S\r\n", Meaning::Weight, "12.345", "G", Stability::Stable},
    {"seven_digits_in_error", "A00\r\n+   0.000 G E\r\n", Meaning::InstrumentError, "", ""},
    {"carats", "A00\r\n+  12.50CT S\r\n", Meaning::OtherUnit, "12.50", "CT", Stability::Stable},
    {"pieces", "A00\r\n+     12PC S\r\n", Meaning::OtherUnit, "12", "PC", Stability::Stable},
    {"another_makers_error", "ES\r\n", Meaning::NotUnderstood, "", ""},
    {"error_answer", "E01\r\n", Meaning::InstrumentError, "", ""},
    {"acknowledgement_alone", "A00\r\n", Meaning::NotStable, "", ""},
    {"record_cut_off", "A00\r\n+  12.50 G\r\n", Meaning::Truncated, "", ""},
    {"noise", "j\xff\xb8\xee", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Kern, testing::ValuesIn(kCases), NameOf);

}  // namespace
