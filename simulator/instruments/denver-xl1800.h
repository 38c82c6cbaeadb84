#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry denverXl1800();  ///< "denver-xl1800"

}  // namespace simulator
