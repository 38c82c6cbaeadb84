#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry scaleHouse();  ///< "scale-house"

}  // namespace simulator
