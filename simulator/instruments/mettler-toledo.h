#pragma once

#include "simulator/Catalog.h"

namespace simulator {

// The balances that speak MT-SICS; they differ in their models and line settings only.
CatalogEntry MettlerToledoEntry();   ///< "mettler-toledo"
CatalogEntry MettlerPr2003Entry();   ///< "mettler-pr2003"
CatalogEntry MettlerXsEntry();       ///< "mettler-xs"
CatalogEntry MettlerSb32001Entry();  ///< "mettler-sb32001"

}  // namespace simulator
