#pragma once

#include <memory>

#include "replay/Playback.h"
#include "simulator/Catalog.h"

/// The instrument that gives the answers of a record. `fast`: answers come at once, not after the
/// pauses of the record.
simulator::CatalogEntry RecordedInstrumentEntry(const std::shared_ptr<Playback>& playback,
                                                bool fast);
