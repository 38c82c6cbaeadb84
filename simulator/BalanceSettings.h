#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// The switches that every instrument has because it is a balance: capacity, readability, unit,
/// noise, drift and settling.
const std::vector<SwitchDescription>& BalanceSwitches();

/// Stores the value of one of them in `data`. An empty value changes nothing: the instrument keeps
/// its own. Throws std::invalid_argument for a value that is not a number.
void ApplyBalanceSwitches(const Switches& switches, BalanceData& data);

}  // namespace simulator
