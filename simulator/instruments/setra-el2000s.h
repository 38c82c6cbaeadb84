#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry setraEl2000s();  ///< "setra-el2000s"

}  // namespace simulator
