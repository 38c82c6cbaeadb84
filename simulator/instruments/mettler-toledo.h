#pragma once

#include "simulator/Catalog.h"

namespace simulator {

// The balances that speak MT-SICS; they differ in their models and line settings only.
CatalogEntry mettlerToledo();   ///< "mettler-toledo"
CatalogEntry mettlerPr2003();   ///< "mettler-pr2003"
CatalogEntry mettlerXs();       ///< "mettler-xs"
CatalogEntry mettlerSb32001();  ///< "mettler-sb32001"

}  // namespace simulator
