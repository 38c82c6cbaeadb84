#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceDIC_XL1800>() {
    return {Readiness::Reading,
            {{"?1", "1+%8.2f g\r\n"}},
            {"Tare", "Weight 0", "Weight 2"},
            WholeOnEveryPort(12.34),
            {{"1+ 0.00 g\r\n", {"IsReady", "Tare"}, {"?1", "T", "?1"}}},
            {{"typical", "1+  100.00 g\r\n", kStrtod}}};
}

}  // namespace answers
