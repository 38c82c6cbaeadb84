#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry RadwagEntry();  ///< "radwag"

}  // namespace simulator
