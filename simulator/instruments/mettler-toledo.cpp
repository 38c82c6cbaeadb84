#include "simulator/instruments/MtSicsEntry.h"

namespace simulator {

template <>
CatalogEntry EntryOf<WbalanceMettlerToledo>() {
    CatalogEntry entry = MtSicsEntry("level-1");
    entry.model = "MT-SICS balance, 610 g";
    entry.line = {2400, 7, Parity::Even, 1, FlowControl::None};
    return entry;
}

}  // namespace simulator
