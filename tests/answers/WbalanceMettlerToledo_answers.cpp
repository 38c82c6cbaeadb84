#include "Answers.h"

namespace answers {

// Without an answer to the reset, which would stay in the line and be read as the next weight.
template <>
Instrument InstrumentOf<WbalanceMettlerToledo>() {
    return {Readiness::Spoiling,
            {{"S\r\n", "S S   %8.2f g\r\n"}, {"SI\r\n", "S D   %8.2f g\r\n"}, {"Z\r\n", "Z A\r\n"}},
            {"Tare", "Weight 0", "Weight 1", "Weight 2"}};
}

}  // namespace answers
