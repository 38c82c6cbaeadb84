#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/instruments/Dialect.h"
#include "simulator/line/LineSettings.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// One instrument that can be simulated.
struct CatalogEntry {
    std::string name;  ///< the name everywhere: catalog, `wbalance` driver, documentation
    std::string maker;
    std::string model;
    std::string driverClass;  ///< class of the library that speaks to it
    LineSettings line;        ///< settings as delivered
    BalanceData balance;
    std::vector<SwitchDescription> switches;
    std::function<std::unique_ptr<Dialect>(BalanceModel&, const Switches&)> createDialect;
    /// In place of `balance`, for an entry with models that differ in capacity and readability.
    std::function<BalanceData(const Switches&)> modelBalance = nullptr;
};

/// All instruments, in alphabetical order of their names.
const std::vector<CatalogEntry>& Catalog();

/// The entry of this name. Throws std::invalid_argument, listing the names, when there is none.
const CatalogEntry& FindInstrument(const std::string& name);

}  // namespace simulator
