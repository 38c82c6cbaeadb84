#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// The switches that every instrument has because it is a balance: capacity, readability, unit,
/// noise, drift and settling.
const std::vector<SwitchDescription>& BalanceSwitches();

/// Takes one of them over into `data`; does nothing for the empty value, which stands for what the
/// instrument is by itself. Throws std::invalid_argument for a value that is no number.
void ApplyBalanceSwitches(const Switches& switches, BalanceData& data);

}  // namespace simulator
