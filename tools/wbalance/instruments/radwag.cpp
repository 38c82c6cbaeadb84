#include <wbalance/WbalanceRadwag.h>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Radwag.h"

namespace tool {
namespace {

// "SI ?       18.5 g  "
bool IsFrame(const std::string& answer) {
    return StartsWith(answer, "SI ") && Means<ReadRadwag>(answer);
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceRadwag>() {
    DriverInfo driver{"Radwag", "balances and terminals of the common command set", ReadRadwag,
                      Plain<WbalanceRadwag>};
    driver.modes = "stable: S; auto: S, else SI; now: SI";
    driver.menu.onRequest = "continuous transmission to off";
    driver.recognition.asked = {{"SI\r\n", IsFrame}};
    // A terminal knows NB alone.
    driver.identity = {{"NB\r\n", &Identity::serialNumber, "NB A "},
                       {"BN\r\n", &Identity::model, "BN A "},
                       {"RV\r\n", &Identity::softwareVersion, "RV A "}};
    auto tare = Trusted(Tare, "zeroes instead when the balance refuses the tare");
    tare.fallback = "Z\r\n";
    tare.fellBack = "zeroed, because the balance did not confirm the tare";
    driver.operations = {{Operation::Tare, tare}, {Operation::Zero, Trusted(Zero<WbalanceRadwag>)}};
    return driver;
}

}  // namespace tool
