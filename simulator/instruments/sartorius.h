#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry SartoriusEntry();  ///< "sartorius"

}  // namespace simulator
