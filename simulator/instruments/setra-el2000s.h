#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry SetraEl2000sEntry();  ///< "setra-el2000s"

}  // namespace simulator
