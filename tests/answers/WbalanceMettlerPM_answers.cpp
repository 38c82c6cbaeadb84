#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerPM>() {
    return {Readiness::Cheap,
            {{"@\r\n", "ES\r\n"}, {"S\r\n", "S     %8.2f g\r\n"}, {"SI\r\n", "SD    %8.2f g\r\n"}},
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5"}};
}

}  // namespace answers
