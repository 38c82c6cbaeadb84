#include <wbalance/WbalanceKern_EW_EGN_EWB.h>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Kern.h"

namespace tool {
namespace {

bool IsWrongCommand(const std::string& answer) {
    return StartsWith(answer, "E01");
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceKern_EW_EGN_EWB>() {
    // The driver's own check weighs, and weighing checks first.
    DriverInfo driver{"Kern", "EW, EG-N, EWB", ReadKern, LineReady<WbalanceKern_EW_EGN_EWB>};
    driver.modes =
        "stable: O9, 5 s, and no weight when its status is blank; auto: O9, else the mean of five "
        "O8; now: O8";
    driver.operations = {{Operation::Tare, Trusted(Tare)}};
    driver.menu.onRequest = "the interface to commands from the host (remote, no automatic print)";
    driver.recognition.asked = {{"O8\r\n", Means<ReadKern>}};
    driver.recognition.overheard = {{"SI\r\n", IsWrongCommand}};
    return driver;
}

}  // namespace tool
