#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry ohaus();  ///< "ohaus"

}  // namespace simulator
