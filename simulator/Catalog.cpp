#include "simulator/Catalog.h"

#include <algorithm>
#include <stdexcept>

#include "simulator/instruments/denver-xl1800.h"
#include "simulator/instruments/gibertini.h"
#include "simulator/instruments/kern.h"
#include "simulator/instruments/mettler-pm.h"
#include "simulator/instruments/mettler-toledo.h"
#include "simulator/instruments/ohaus.h"
#include "simulator/instruments/radwag.h"
#include "simulator/instruments/sartorius.h"
#include "simulator/instruments/scale-house.h"
#include "simulator/instruments/setra-el2000s.h"

namespace simulator {
namespace {

std::vector<CatalogEntry> SortedByName(std::vector<CatalogEntry> entries) {
    std::sort(entries.begin(), entries.end(),
              [](const CatalogEntry& a, const CatalogEntry& b) { return a.name < b.name; });
    return entries;
}

}  // namespace

const std::vector<CatalogEntry>& Catalog() {
    static const std::vector<CatalogEntry> entries = SortedByName({
        DenverXl1800Entry(),
        GibertiniEntry(),
        KernEntry(),
        MettlerToledoEntry(),
        MettlerPr2003Entry(),
        MettlerXsEntry(),
        MettlerSb32001Entry(),
        MettlerPmEntry(),
        OhausEntry(),
        RadwagEntry(),
        SartoriusEntry(),
        ScaleHouseEntry(),
        SetraEl2000sEntry(),
    });
    return entries;
}

const CatalogEntry& FindInstrument(const std::string& name) {
    std::string names;
    for (const auto& entry : Catalog()) {
        if (entry.name == name) return entry;
        names += (names.empty() ? "" : ", ") + entry.name;
    }
    throw std::invalid_argument("there is no instrument \"" + name + "\"; there are " + names);
}

}  // namespace simulator
