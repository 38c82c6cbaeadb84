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

std::string TestNameOf(const Instrument& instrument) {
    std::string name = instrument.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

}  // namespace facts
