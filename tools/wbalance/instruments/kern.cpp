#include <wbalance/WbalanceKern_EW_EGN_EWB.h>

#include "Operations.h"
#include "drivers/Factory.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceKern_EW_EGN_EWB>() {
    // The driver's own check weighs, and weighing checks first.
    DriverInfo driver{"Kern", "EW, EG-N, EWB", ReadKern, Quiet<WbalanceKern_EW_EGN_EWB>};
    driver.modes =
        "stable: O9, 5 s, and no weight when its status is blank; auto: O9, else the mean of five "
        "O8; now: O8";
    driver.operations = {{Operation::Tare, Trusted(Tare)}};
    return driver;
}

}  // namespace tool
