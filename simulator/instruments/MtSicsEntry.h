#pragma once

#include <string>

#include "simulator/Catalog.h"

namespace simulator {

/// The entry of a balance of Mettler Toledo that speaks MT-SICS. Its model is `sicsModel` if no
/// other one is chosen. Each instrument has its own name and line settings.
CatalogEntry MtSicsEntry(const std::string& sicsModel);

}  // namespace simulator
