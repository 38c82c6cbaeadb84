#include "simulator/instruments/MtSicsEntry.h"

namespace simulator {

template <>
CatalogEntry EntryOf<WbalanceMettlerSB32001>() {
    CatalogEntry entry = MtSicsEntry("sb32001");
    entry.model = "SB32001, 32.1 kg";
    entry.line = {2400, 7, Parity::Even, 1, FlowControl::None};
    return entry;
}

}  // namespace simulator
