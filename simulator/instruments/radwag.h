#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry radwag();  ///< "radwag"

}  // namespace simulator
