#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceSartorius>() {
    return {
        Readiness::Reading, {{"\x1bP\r\n", "+ %8.2f g  \r\n"}}, {"Tare", "Weight 1", "TareSet 0"}};
}

}  // namespace answers
