#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// A balance that speaks MT-SICS: its identity and its capabilities.
struct MtSicsModel {
    std::string name;            ///< of the switch
    std::string type;            ///< in the answer to I2
    std::string designation;     ///< in the answer to I11
    std::string levels;          ///< the texts of I1
    std::string software;        ///< in the answer to I3
    std::string softwareNumber;  ///< in the answer to I5
    double capacity;             ///< grams, with the overrange
    double readability;          ///< grams
    bool hasTerminal;            ///< and so a display for texts
    bool hasLevel2;              ///< commands of level 2, beyond PWR
    bool isNew;                  ///< SIS and M28, of the newer ones only
    bool hasDoors;               ///< WS
    bool saysMinutes;            ///< I15
};

/// The model that is chosen.
const MtSicsModel& ChosenMtSicsModel(const Switches& switches);

/// The switches of a balance that speaks MT-SICS. Its model is `model` if no other one is chosen.
std::vector<SwitchDescription> MtSicsSwitches(const std::string& model);

/// The ranges and the step of the model that is chosen.
BalanceData MtSicsBalance(const Switches& switches);

}  // namespace simulator
