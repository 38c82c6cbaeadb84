#include "simulator/Catalog.h"

#include <algorithm>
#include <stdexcept>

namespace simulator {
namespace {

CatalogEntry Named(const char* name, const char* driverClass, CatalogEntry entry) {
    entry.name = name;
    entry.driverClass = driverClass;
    return entry;
}

std::vector<CatalogEntry> SortedByName(std::vector<CatalogEntry> entries) {
    std::sort(entries.begin(), entries.end(),
              [](const CatalogEntry& a, const CatalogEntry& b) { return a.name < b.name; });
    return entries;
}

}  // namespace

const std::vector<CatalogEntry>& Catalog() {
#define WBALANCE_ENTRY(name, Class) Named(name, #Class, EntryOf<Class>()),
    static const std::vector<CatalogEntry> entries =
        SortedByName({WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ENTRY)});
#undef WBALANCE_ENTRY
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
