#include "Answers.h"

namespace answers {

template <>
Instrument InstrumentOf<WbalanceKern_EW_EGN_EWB>() {
    return {Readiness::Endless,
            {{"T \r\n", "A00\r\n"},
             {"O9\r\n", "A00\r\n+%7.2f G S\r\n"},
             {"O8\r\n", "A00\r\n+%7.2f G U\r\n"}},
            {"Tare", "Weight 1", "Weight 2"},
            WholeOnEveryPort(12.34, 2400),
            {{"A00\r\n+   0.00 G S\r\n",
              {"Tare", "Weight 0", "Weight 2"},
              {"T \r\n", "O9\r\n", "O8\r\n"}},
             {"A00\r\n", {"Weight 1"}, {"O9\r\n", "O0\r\n", "O8\r\n"}}},
            {{"typical", "A00\r\n+ 100.00 G S\r\n", kStrtodOnACopy}},
            NullWeight::SameResult};
}

}  // namespace answers
