#include "readings/Sbi.h"
#include "InterpreterTest.h"

using tool::Meaning;
using tool::Stability;

namespace {

class Sbi : public testing::TestWithParam<AnswerCase> {};

TEST_P(Sbi, Is_read_as_meant) {
    ExpectReading(tool::ReadSbi, GetParam());
}

const AnswerCase kCases[] = {
    {"stable", "+   123.56 g  \r\n", Meaning::Weight, "123.56", "g", Stability::Stable},
    {"negative", "-    12.34 g  \r\n", Meaning::Weight, "-12.34", "g", Stability::Stable},
    {"without_a_unit_is_dynamic", "+   123.56    \r\n", Meaning::Weight, "123.56", "",
     Stability::Dynamic},
    {"with_identifier", "N     +   123.56 g  \r\n", Meaning::Weight, "123.56", "g",
     Stability::Stable},
    {"gross_with_identifier", "G#    +   123.56 g  \r\n", Meaning::Weight, "123.56", "g",
     Stability::Stable},
    {"bracketed_digit", "+ 123.5[6] g  \r\n", Meaning::Weight, "123.56", "g", Stability::Stable},
    {"milligrams_in_high_resolution", "+111.25507 mg \r\n", Meaning::OtherUnit, "111.25507", "mg",
     Stability::Stable},
    {"kilograms", "+  1.23456 kg \r\n", Meaning::OtherUnit, "1.23456", "kg", Stability::Stable},
    {"overload", "      H       \r\n", Meaning::Overload, "", ""},
    {"underload", "      L       \r\n", Meaning::Underload, "", ""},
    {"calibration", "      C       \r\n", Meaning::Calibrating, "", ""},
    {"final_readout", "      --      \r\n", Meaning::Standby, "", ""},
    {"blank", "              \r\n", Meaning::Standby, "", ""},
    {"error_54", "   Err  54    \r\n", Meaning::InstrumentError, "", ""},
    {"overload_with_identifier", "Stat        H       \r\n", Meaning::Overload, "", ""},
    {"high_with_identifier", "Stat      High      \r\n", Meaning::Overload, "", ""},
    {"low_with_identifier", "Stat      Low       \r\n", Meaning::Underload, "", ""},
    {"external_calibration", "Stat     Cal. Ext.  \r\n", Meaning::Calibrating, "", ""},
    {"standby", "Stat       OFF      \r\n", Meaning::Standby, "", ""},
    {"error_with_identifier", "Stat     Err  54    \r\n", Meaning::InstrumentError, "", ""},
    {"model_filled_up", "LA620S              \r\n", Meaning::NotUnderstood, "", ""},
    {"blank_in_a_long_line", "                    \r\n", Meaning::Standby, "", ""},
    {"net_line_without_a_weight", "N                   \r\n", Meaning::Standby, "", ""},
    {"tare_line", "T1    +     5.00 g  \r\nN1    +   123.56 g  \r\n", Meaning::NotUnderstood, "",
     ""},
    {"net_behind_the_tare_line", "TP1   +     5.00 g  \r\nN1    +   123.56 g  \r\n",
     Meaning::Weight, "123.56", "g", Stability::Stable},
    {"count", "Qnt   +       12 pcs\r\n", Meaning::OtherUnit, "", ""},
    {"cut_off", "+   123.5\r\n", Meaning::NotUnderstood, "", ""},
    {"empty", "", Meaning::NotUnderstood, "", ""},
};

INSTANTIATE_TEST_SUITE_P(Answer, Sbi, testing::ValuesIn(kCases), NameOf);

}  // namespace
