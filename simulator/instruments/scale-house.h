#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry ScaleHouseEntry();  ///< "scale-house"

}  // namespace simulator
