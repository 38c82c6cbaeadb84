#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry KernEntry();  ///< "kern"

}  // namespace simulator
