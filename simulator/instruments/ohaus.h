#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry OhausEntry();  ///< "ohaus"

}  // namespace simulator
