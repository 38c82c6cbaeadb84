#include "simulator/instruments/MtSicsEntry.h"

#include "simulator/instruments/MtSics.h"

namespace simulator {

CatalogEntry MtSicsEntry(const std::string& sicsModel) {
    CatalogEntry entry;
    entry.maker = "Mettler Toledo";
    entry.switches = MtSicsSwitches(sicsModel);
    entry.modelBalance = MtSicsBalance;
    entry.createDialect = [](BalanceModel& balance, const Switches& switches) {
        return std::unique_ptr<Dialect>(new MtSics(balance, switches));
    };
    return entry;
}

}  // namespace simulator
