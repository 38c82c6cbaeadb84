#include "MtSicsAnswers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerSB32001>() {
    return {Readiness::Cheap,
            MtSicsAnswers(),
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5",
             "DisplayMessage READY"},
            WholeOnEveryPort(12.3),
            {{kMtSicsAnswer,
              {"DisplayMessage READY", "TareSet 5", "Weight 0", "Weight 2"},
              {"@\r\n", "SI\r\n", "D \"READY\"\r\n", "DW\r\n", "T\r\n", "TA 5.00 g\r\n", "S\r\n",
               "SI\r\n"}}}};
}

}  // namespace answers
