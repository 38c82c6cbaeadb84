#pragma once

#include "simulator/Catalog.h"

namespace simulator {

// The balances that speak MT-SICS; they differ in their ranges and line settings only.
CatalogEntry mettlerToledo();   ///< "mettler-toledo"
CatalogEntry mettlerPr2003();   ///< "pr2003"
CatalogEntry mettlerXs();       ///< "xs"
CatalogEntry mettlerSb32001();  ///< "sb32001"

}  // namespace simulator
