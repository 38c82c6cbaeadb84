#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry MettlerPmEntry();  ///< "mettler-pm"

}  // namespace simulator
