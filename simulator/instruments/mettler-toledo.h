#pragma once

#include "simulator/Catalog.h"

namespace simulator {

// The balances that speak MT-SICS; they differ in their ranges and line settings only.
CatalogEntry mettlerToledo();   ///< "mettler-toledo"
CatalogEntry mettlerPr2003();   ///< "mettler-pr2003"
CatalogEntry mettlerXs();       ///< "mettler-xs"
CatalogEntry mettlerSb32001();  ///< "mettler-sb32001"

// For other balances that can be set to MT-SICS.
std::unique_ptr<Dialect> mtSicsDialect(BalanceModel& model, const Switches& switches);
std::vector<SwitchDescription> mtSicsSwitches();

}  // namespace simulator
