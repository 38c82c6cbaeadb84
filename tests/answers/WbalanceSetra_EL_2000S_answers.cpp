#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceSetra_EL_2000S>() {
    return {Readiness::Reading,
            {{"#", "1+%8.2f g\r\n"}},
            {"Tare", "Weight 0", "Weight 2"},
            WholeOnEveryPort(12.34),
            {{"1+ 0.00 g\r\n", {"Tare"}, {"#", "T", "#"}}},
            {{"typical", "1+  100.00 g\r\n", kStrtod}}};
}

}  // namespace answers
