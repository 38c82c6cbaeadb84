#include <wbalance/WbalanceMettlerPM.h>

#include "MtSics.h"
#include "readings/MtSics.h"
#include "readings/Pm.h"

namespace tool {
namespace {

// "SD      12.34 g"; what MT-SICS answers is another family's, until its model tells that it is a
// PM.
bool IsPmAnswer(const std::string& answer) {
    if (StartsWith(answer, "SI+") || StartsWith(answer, "SI-")) return true;
    return IsWeight<ReadPm>(answer) && !Means<ReadMtSics>(answer);
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceMettlerPM>() {
    DriverInfo driver{"Mettler", "PM, standard protocol or MT-SICS option", ReadPm,
                      Plain<WbalanceMettlerPM>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    driver.identity = kMtIdentity;
    driver.recognition.asked = {{kMtRequest, IsPmAnswer}};
    driver.recognition.protocol = kMtSics;
    driver.recognition.modelMark = "PM";
    auto preset = Weighed(PresetTareOnceReady,
                          "tares first; with MT-SICS the tare that this gives is added to it");
    preset.command = "TA ";
    preset.confirmation = "TA A";
    preset.setter = "B ";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    return driver;
}

}  // namespace tool
