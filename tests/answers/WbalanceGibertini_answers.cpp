#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceGibertini>() {
    return {Readiness::Endless,
            {{"T\r", "  %8.2f g   TS\r\n"}, {"B\r", "  %8.2f g   DS\r\n"}},
            {"Tare", "Weight 0"}};
}

}  // namespace answers
