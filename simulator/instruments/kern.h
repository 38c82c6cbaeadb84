#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry kern();  ///< "kern"

}  // namespace simulator
