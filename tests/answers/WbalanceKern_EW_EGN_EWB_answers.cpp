#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceKern_EW_EGN_EWB>() {
    return {Readiness::Endless,
            {{"T \r\n", "A00\r\n"},
             {"O9\r\n", "A00\r\n+%7.2f G S\r\n"},
             {"O8\r\n", "A00\r\n+%7.2f G U\r\n"}},
            {"Tare", "Weight 1", "Weight 2"}};
}

}  // namespace answers
