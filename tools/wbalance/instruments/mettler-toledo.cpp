#include <wbalance/WbalanceMettlerToledo.h>

#include "MtSics.h"
#include "readings/MtSics.h"

namespace tool {
namespace {

// "S S     100.00 g"; the name of the command behind the first S would be another maker's.
bool IsMtSicsAnswer(const std::string& answer) {
    return StartsWith(answer, "S ") && Means<ReadMtSics>(answer);
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceMettlerToledo>() {
    // The reset of the driver's own check is answered "I4 A ...", and its 4 would
    // be taken for the weight.
    DriverInfo driver{"Mettler Toledo", "any balance that speaks MT-SICS", ReadMtSics,
                      LineReady<WbalanceMettlerToledo>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    driver.identity = kMtIdentity;
    driver.menu.onRequest = kMtInterface;
    driver.recognition.asked = {{kMtRequest, IsMtSicsAnswer}};
    driver.recognition.protocol = kMtSics;
    // > "I2\r\n"  < I2 A "PR2003 2100.000 g"
    driver.recognition.modelQuestion = "I2\r\n";
    auto tare = Trusted(Tare,
                        "zeroes (Z) and does not tare, so that a load on the pan may prevent it; "
                        "the drivers of the models tare (T)");
    tare.zeroes = true;
    driver.operations = {{Operation::Tare, tare}, {Operation::Zero, Trusted(Tare)}};
    return driver;
}

}  // namespace tool
