#include "MtSicsAnswers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceMettlerPM>() {
    return {Readiness::Cheap,
            {{"@\r\n", "ES\r\n"}, {"S\r\n", "S     %8.2f g\r\n"}, {"SI\r\n", "SD    %8.2f g\r\n"}},
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2", "TareSet 5"},
            WholeOnEveryPort(12.34),
            {{kMtSicsAnswer,
              {"Weight 0", "TareSet 5"},
              {"@\r\n", "SI\r\n", "@\r\n", "SI\r\n", "S\r\n", "SI\r\n", "T\r\n", "TA 5.00 g\r\n"}},
             {"S       0.00 g\r\n",
              {"Weight 0", "TareSet 5"},
              {"@\r\n", "SI\r\n", "@\r\n", "SI\r\n", "S\r\n", "SI\r\n", "T\r\n", "SI\r\n", "S\r\n",
               "SI\r\n", "B 5.00\r\n", "SI\r\n", "S\r\n"}}}};
}

}  // namespace answers
