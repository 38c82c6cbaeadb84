#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceRadwag>() {
    return {Readiness::Cheap,
            {{"S\r\n", "S A\r\nS      %8.2f g  \r\n"},
             {"SI\r\n", "SI ?   %8.2f g  \r\n"},
             {"T\r\n", "T A\r\nT D\r\n"},
             {"Z\r\n", "Z A\r\nZ D\r\n"}},
            {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2"}};
}

}  // namespace answers
