#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerXS>() {
    Instrument one;
    one.title = "Mettler Toledo, XS";
    one.line = "9600,8N1";
    one.operations = "tare preset-tare display on off";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"XS204 220.0000 g\"\r\n";
    return one;
}

}  // namespace facts
