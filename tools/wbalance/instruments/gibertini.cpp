#include <wbalance/WbalanceGibertini.h>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Gibertini.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceGibertini>() {
    // The driver's own check weighs, and weighing checks first.
    DriverInfo driver{"Gibertini", "CRYSTAL, EU-C (CRYSTAL protocol)", ReadGibertini,
                      LineReady<WbalanceGibertini>};
    driver.modes =
        "all alike: B, the first valid record within 20 s; with stable no weight when that record "
        "is not stable";
    // Its record says that it is taring (T), and whether the pan is at rest (S) or not yet.
    driver.operations = {{Operation::Tare, Answered(Tare, "T", "TS")}};
    // "B\r", its request, would preset a tare on a Mettler PM, which answers the first question and
    // is found by it. The carriage return in front ends what questions without a line end have
    // left, which a Gibertini would take for the beginning of this one.
    driver.recognition.asked = {{"\rB\r", Means<ReadGibertini>}};
    driver.recognition.askedLast = true;
    return driver;
}

}  // namespace tool
