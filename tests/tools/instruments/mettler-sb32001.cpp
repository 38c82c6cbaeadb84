#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerSB32001>() {
    Instrument one;
    one.title = "Mettler Toledo, SB32001";
    one.line = "2400,7E1";
    one.operations = "tare preset-tare display";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"SB32001 32100.0 g\"\r\n";
    return one;
}

}  // namespace facts
