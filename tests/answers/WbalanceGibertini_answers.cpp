#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceGibertini>() {
    return {Readiness::Endless,
            {{"T\r", "  %8.2f g   TS\r\n"}, {"B\r", "  %8.2f g   DS\r\n"}},
            {"Tare", "Weight 0"},
            WholeOnEveryPort(12.34),
            {{"      0.00 g   DS\r\n", {"Tare", "Weight 0"}, {"T\r", "B\r"}}},
            {{"typical", "    100.00 g   DS\r\n", kStrtodOnACopy},
             {"worst", "    100.00 g   DS\r\n    100.00 g   DS\r\n    100.00 g   DS\r\n",
              kStrtodOnACopy}},
            NullWeight::SameResult};
}

}  // namespace answers
