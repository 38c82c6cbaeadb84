#include "MtSicsAnswers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerPR2003>() {
    return {Readiness::Cheap,
            MtSicsAnswers(),
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5",
             "DisplayMessage READY"},
            WholeOnEveryPort(12.34),
            {{kMtSicsAnswer,
              {"DisplayMessage READY", "Tare", "TareSet 5", "Weight 0", "Weight 2", "TurnItOn",
               "TurnItOff"},
              {"@\r\n", "D \"READY\"\r\n", "DW\r\n", "T\r\n", "T\r\n", "TA 5.00 g\r\n", "S\r\n",
               "SI\r\n", "PWR 1\r\n", "DW\r\n", "DW\r\n", "PWR 0\r\n"}}}};
}

}  // namespace answers
