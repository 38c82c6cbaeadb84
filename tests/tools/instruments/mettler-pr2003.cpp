#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerPR2003>() {
    Instrument one;
    one.title = "Mettler Toledo, PR2003 and the PR line";
    one.line = "2400,7E1";
    one.operations = "tare preset-tare display on off";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"PR2003 2100.000 g\"\r\n";
    return one;
}

}  // namespace facts
