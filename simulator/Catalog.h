#pragma once

#include <Instruments.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/instruments/Dialect.h"
#include "simulator/line/UartSettings.h"
#include "simulator/model/BalanceModel.h"

// The drivers' classes. They are only declared here, to name the driver of an instrument.
#define WBALANCE_DECLARE(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE)
#undef WBALANCE_DECLARE

namespace simulator {

/// One instrument that can be simulated.
struct CatalogEntry {
    std::string name;         ///< the name everywhere: catalog, `wbalance` driver, documentation
    std::string driverClass;  ///< class of the library that speaks to it
    std::string maker;
    std::string model;
    UartSettings line;  ///< settings as delivered
    BalanceData balance;
    std::vector<SwitchDescription> switches;
    std::function<std::unique_ptr<Dialect>(BalanceModel&, const Switches&)> createDialect;
    /// Used in place of `balance` if the entry has models with different capacity and readability.
    std::function<BalanceData(const Switches&)> modelBalance = nullptr;
};

/// What instruments/NAME.cpp says of the instrument that this class of the library drives; name and
/// class are added from drivers/instruments.txt.
template <class Driver>
CatalogEntry EntryOf();

#define WBALANCE_DECLARE(name, Class) \
    template <>                       \
    CatalogEntry EntryOf<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE)
#undef WBALANCE_DECLARE

/// All instruments, in alphabetical order of their names.
const std::vector<CatalogEntry>& Catalog();

/// The entry of this name. Throws std::invalid_argument, listing the names, when there is none.
const CatalogEntry& FindInstrument(const std::string& name);

}  // namespace simulator
