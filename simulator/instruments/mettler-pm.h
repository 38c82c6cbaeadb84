#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry mettlerPm();  ///< "mettler-pm"

}  // namespace simulator
