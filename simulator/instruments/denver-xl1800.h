#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry DenverXl1800Entry();  ///< "denver-xl1800"

}  // namespace simulator
