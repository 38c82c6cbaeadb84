#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerPM>() {
    Instrument one;
    one.title = "Mettler, PM, standard protocol or MT-SICS option";
    one.line = "600,7E1";
    one.operations = "tare preset-tare";
    one.ownReadiness = true;

    one.questions = {"SI\r\n"};
    one.known = {{"SI\r\n", "SD      12.34 g\r\n"},
                 {"SI\r\n", "S      -12.34 g\r\n"},
                 {"SI\r\n", "SI+\r\n"}};
    one.modelAnswer = "I2 A \"PM4000 4100.00 g\"\r\n";
    return one;
}

}  // namespace facts
