#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

// A frame: command in 3 columns, stability, blank, sign, mass in 9, blank, unit in 3.
constexpr std::size_t kRadwagMassColumns = 9;
constexpr std::size_t kRadwagUnitColumns = 3;

/// "SI ?       18.5 g  "; a wide one has a blank more behind the command.
std::string RadwagFrame(const std::string& command, const Indication& indication, bool isWide);

/// The part that the frame and the line of the print key share: stability, sign, mass and unit.
std::string RadwagMass(const Indication& indication);

/// The units that a host can choose for the frames, in the order of "US next".
const std::vector<Unit>& RadwagUnits();

std::vector<SwitchDescription> RadwagSwitches();

}  // namespace simulator
