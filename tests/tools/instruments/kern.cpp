#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceKern_EW_EGN_EWB>() {
    Instrument one;
    one.title = "Kern, EW, EG-N, EWB";
    one.line = "1200,8N2";
    one.operations = "tare";

    one.questions = {"O8\r\n"};
    one.known = {{"SI\r\n", "E01\r\n"}, {"O8\r\n", "A00\r\n+  12.50 G U\r\n"}};
    return one;
}

}  // namespace facts
