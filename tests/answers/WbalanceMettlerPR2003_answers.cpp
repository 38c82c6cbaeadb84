#include "MtSicsAnswers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerPR2003>() {
    return {Readiness::Cheap,
            MtSicsAnswers(),
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5",
             "DisplayMessage READY"}};
}

}  // namespace answers
