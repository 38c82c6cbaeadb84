#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceSetra_EL_2000S>() {
    Instrument one;
    one.title = "Setra, EL-2000S";
    one.line = "2400,8N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"#"};
    one.known = {{"#", "1+   12.34 g\r\n"}};
    return one;
}

}  // namespace facts
