#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerToledo>() {
    Instrument one;
    one.title = "Mettler Toledo, any balance that speaks MT-SICS";
    one.line = "2400,7E1";
    one.operations = "tare zero";

    one.questions = {"SI\r\n"};
    one.known = {{"SI\r\n", "S S     100.00 g\r\n"}, {"SI\r\n", "S I\r\n"}};
    return one;
}

}  // namespace facts
