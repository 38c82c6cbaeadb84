#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceScaleHouseALD>() {
    return {Readiness::Reading, {{"P\r\n", " %.2f g N\r\n"}}, {"Tare", "Weight 1"}};
}

}  // namespace answers
