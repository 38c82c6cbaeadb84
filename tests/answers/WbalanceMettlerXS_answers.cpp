#include "MtSicsAnswers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerXS>() {
    return {Readiness::Cheap,
            MtSicsAnswers(),
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5",
             "DisplayMessage READY"}};
}

}  // namespace answers
