#include <wbalance/WbalanceRadwag.h>

#include "Operations.h"
#include "drivers/Factory.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceRadwag>() {
    DriverInfo driver{"Radwag", "balances and terminals of the common command set", ReadRadwag,
                      Plain<WbalanceRadwag>};
    driver.modes = "stable: S; auto: S, else SI; now: SI";
    driver.operations = {
        {Operation::Tare, Trusted(Tare, "zeroes instead when the balance refuses the tare")},
        {Operation::Zero, Trusted(Zero<WbalanceRadwag>)}};
    return driver;
}

}  // namespace tool
