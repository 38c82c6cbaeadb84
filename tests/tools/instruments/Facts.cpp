#include "Facts.h"

#include <algorithm>

namespace facts {
namespace {

Instrument Named(const std::string& name, Instrument instrument) {
    instrument.name = name;
    return instrument;
}

}  // namespace

const std::vector<Instrument>& All() {
#define WBALANCE_FACTS(name, Class) Named(name, Of<Class>()),
    static const std::vector<Instrument> all = {WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_FACTS)};
#undef WBALANCE_FACTS
    return all;
}

bool Instrument::Has(const std::string& operation) const {
    return (" " + operations + " ").find(" " + operation + " ") != std::string::npos;
}

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& one : All())
        names.push_back(one.name);
    return names;
}

std::string FirstWith(const std::string& operation) {
    const auto first = std::find_if(All().begin(), All().end(),
                                    [&](const Instrument& one) { return one.Has(operation); });
    return first == All().end() ? "" : first->name;
}

std::string TestNameOf(const std::string& instrument) {
    std::string name = instrument;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

}  // namespace facts
