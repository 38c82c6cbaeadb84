#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry GibertiniEntry();  ///< "gibertini"

}  // namespace simulator
