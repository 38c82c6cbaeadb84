#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry gibertini();  ///< "gibertini"

}  // namespace simulator
