#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceOHAUS_SPU602>() {
    return {Readiness::Reading,
            {{"SP\r\n", "   %8.2f g     \r\n"}, {"P\r\n", "   %8.2f g    ?\r\n"}},
            {"Tare", "Weight 0", "Weight 1"}};
}

}  // namespace answers
