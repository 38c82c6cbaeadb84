#pragma once

#include <string>

#include "simulator/Catalog.h"

namespace simulator {

/// A balance of Mettler Toledo that speaks MT-SICS, which is `sicsModel` unless another is chosen.
/// What it is called and its line settings are the instrument's own.
CatalogEntry MtSicsEntry(const std::string& sicsModel);

}  // namespace simulator
