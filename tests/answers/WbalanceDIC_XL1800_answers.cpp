#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceDIC_XL1800>() {
    return {Readiness::Reading, {{"?1", "1+%8.2f g\r\n"}}, {"Tare", "Weight 0", "Weight 2"}};
}

}  // namespace answers
