#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceRadwag>() {
    Instrument one;
    one.title = "Radwag, balances and terminals of the common command set";
    one.line = "9600,7E1";
    one.operations = "tare zero";
    one.ownReadiness = true;

    one.questions = {"SI\r\n"};
    one.known = {{"SI\r\n", "SI ?       18.5 g  \r\n"}, {"SI\r\n", "SI ^      0.000 g  \r\n"}};
    return one;
}

}  // namespace facts
