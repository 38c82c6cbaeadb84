#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceOHAUS_SPU602>() {
    Instrument one;
    one.title = "Ohaus, Scout Pro, Explorer";
    one.line = "2400,7N1";
    one.operations = "tare factory-reset";
    one.readyFirst = true;

    one.questions = {"P\r\n"};
    one.known = {{"P\r\n", "       12.73 g    ?\r\n"}};
    return one;
}

}  // namespace facts
