#include "readings/Ticket.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Ticket : public testing::TestWithParam<AnswerCase> {};

TEST_P(Ticket, Is_read_as_meant) {
    ExpectReading(tool::ReadTicket, GetParam());
}

const AnswerCase kCases[] = {
    {"net", "  123.40 g N\r\n", Meaning::Weight, "123.40", "g"},
    {"net_behind_gross_and_tare", "  128.40 g G\r\n    5.00 g T\r\n  123.40 g N\r\n",
     Meaning::Weight, "123.40", "g"},
    {"what_stands_before_PROJ_is_old", "   99.00 g N\r\nPROJ 7\r\n  123.40 g N\r\n",
     Meaning::Weight, "123.40", "g"},
    {"first_weight_with_a_zero_tare", "PROJ 7\r\n  123.40 g\r\n    0.00 g T\r\n", Meaning::Weight,
     "123.40", "g"},
    {"tare_line_ahead_that_the_driver_takes_for_the_weight", "    0.00 g T\r\n  123.40 g\r\n",
     Meaning::Weight, "123.40", "g"},
    {"gross_with_a_tare_in_use", "PROJ 7\r\n  128.40 g\r\n    5.00 g T\r\n", Meaning::NotUnderstood,
     "", ""},
    {"tare_alone", "    0.00 g T\r\n", Meaning::NotUnderstood, "", ""},
    {"cut_to_numbers", "PROJ  12.5 0.00 12.5", Meaning::NotUnderstood, "", ""},
    {"two_blanks_that_the_driver_reads_as_zero", "  123.40  g N\r\n", Meaning::Weight, "123.40",
     "g"},
    {"kilograms", "  0.1234 kg N\r\n", Meaning::OtherUnit, "0.1234", "kg"},
    {"accumulated_total", "  207.80 g TOTAL\r\n", Meaning::NotUnderstood, "", ""},
    {"without_a_weight", "PROJ 7\r\n", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Ticket, testing::ValuesIn(kCases), NameOf);

}  // namespace
