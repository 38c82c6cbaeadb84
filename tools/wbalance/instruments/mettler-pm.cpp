#include <wbalance/WbalanceMettlerPM.h>

#include "MtSics.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceMettlerPM>() {
    DriverInfo driver{"Mettler", "PM, standard protocol or MT-SICS option", ReadPm,
                      Plain<WbalanceMettlerPM>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    auto preset = Weighed(PresetTareOnceReady,
                          "tares first; with MT-SICS the tare that this gives is added to it");
    preset.command = "TA ";
    preset.confirmation = "TA A";
    preset.setter = "B ";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    return driver;
}

}  // namespace tool
