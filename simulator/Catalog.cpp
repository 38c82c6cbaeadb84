#include "simulator/Catalog.h"

#include <algorithm>
#include <stdexcept>

#include "simulator/instruments/mettler-toledo.h"
#include "simulator/instruments/radwag.h"

namespace simulator {
namespace {

std::vector<CatalogEntry> sortedByName(std::vector<CatalogEntry> entries) {
    std::sort(entries.begin(), entries.end(),
              [](const CatalogEntry& a, const CatalogEntry& b) { return a.name < b.name; });
    return entries;
}

}  // namespace

const std::vector<CatalogEntry>& catalog() {
    static const std::vector<CatalogEntry> entries = sortedByName({
        mettlerToledo(),
        mettlerPr2003(),
        mettlerXs(),
        mettlerSb32001(),
        radwag(),
    });
    return entries;
}

const CatalogEntry& findInstrument(const std::string& name) {
    std::string names;
    for (const auto& entry : catalog()) {
        if (entry.name == name) return entry;
        names += (names.empty() ? "" : ", ") + entry.name;
    }
    throw std::invalid_argument("there is no instrument \"" + name + "\"; there are " + names);
}

}  // namespace simulator
