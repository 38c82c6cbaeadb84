#pragma once

#include "simulator/Catalog.h"

namespace simulator {

CatalogEntry sartorius();  ///< "sartorius"

}  // namespace simulator
