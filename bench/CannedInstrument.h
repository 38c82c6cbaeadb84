#pragma once

#include "Operations.h"
#include "simulator/Catalog.h"

namespace bench {

/// An instrument that gives the answers of an operation, each at once, and says nothing else.
simulator::CatalogEntry CannedInstrument(const Operation& operation);

}  // namespace bench
