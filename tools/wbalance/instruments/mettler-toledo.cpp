#include <wbalance/WbalanceMettlerToledo.h>

#include "MtSics.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceMettlerToledo>() {
    // The reset of the driver's own check is answered "I4 A ...", and its 4 would
    // be taken for the weight.
    DriverInfo driver{"Mettler Toledo", "any balance that speaks MT-SICS", ReadMtSics,
                      Quiet<WbalanceMettlerToledo>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    auto tare = Trusted(Tare,
                        "zeroes (Z) and does not tare, so that a load on the pan may prevent it; "
                        "the drivers of the models tare (T)");
    tare.zeroes = true;
    driver.operations = {{Operation::Tare, tare}, {Operation::Zero, Trusted(Tare)}};
    return driver;
}

}  // namespace tool
