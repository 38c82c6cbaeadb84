#include "simulator/instruments/MtSicsEntry.h"

namespace simulator {

template <>
CatalogEntry EntryOf<WbalanceMettlerXS>() {
    CatalogEntry entry = MtSicsEntry("xs204");
    entry.model = "XS204, 220 g";
    entry.line = {9600, 8, Parity::None, 1, FlowControl::None};
    return entry;
}

}  // namespace simulator
