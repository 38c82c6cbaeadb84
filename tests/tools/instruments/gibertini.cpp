#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceGibertini>() {
    Instrument one;
    one.title = "Gibertini, CRYSTAL, EU-C (CRYSTAL protocol)";
    one.line = "9600,7-1";
    one.operations = "tare";

    one.questions = {"\rB\r"};
    one.known = {{"\rB\r", "    123.45 g   DS\r\n"}};
    return one;
}

}  // namespace facts
