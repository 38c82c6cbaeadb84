#include "simulator/instruments/MtSicsEntry.h"

namespace simulator {

template <>
CatalogEntry EntryOf<WbalanceMettlerPR2003>() {
    CatalogEntry entry = MtSicsEntry("pr2003");
    entry.model = "PR2003, 2100 g";
    entry.line = {2400, 7, Parity::Even, 1, FlowControl::None};
    return entry;
}

}  // namespace simulator
