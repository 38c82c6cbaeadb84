#include "simulator/instruments/mettler-toledo.h"

#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

CatalogEntry Entry(const std::string& name, const std::string& sicsModel, const std::string& model,
                   const std::string& driverClass, const LineSettings& line) {
    CatalogEntry entry;
    entry.name = name;
    entry.maker = "Mettler Toledo";
    entry.model = model;
    entry.driverClass = driverClass;
    entry.line = line;
    entry.switches = MtSicsSwitches(sicsModel);
    entry.modelBalance = MtSicsBalance;
    entry.createDialect = [](BalanceModel& balance, const Switches& switches) {
        return std::unique_ptr<Dialect>(new MtSics(balance, switches));
    };
    return entry;
}

constexpr LineSettings kSevenEven2400{2400, 7, Parity::Even, 1, FlowControl::None};
constexpr LineSettings kEightNone9600{9600, 8, Parity::None, 1, FlowControl::None};

}  // namespace

CatalogEntry MettlerToledoEntry() {
    return Entry("mettler-toledo", "level-1", "MT-SICS balance, 610 g", "WbalanceMettlerToledo",
                 kSevenEven2400);
}

CatalogEntry MettlerPr2003Entry() {
    return Entry("mettler-pr2003", "pr2003", "PR2003, 2100 g", "WbalanceMettlerPR2003",
                 kSevenEven2400);
}

CatalogEntry MettlerXsEntry() {
    return Entry("mettler-xs", "xs204", "XS204, 220 g", "WbalanceMettlerXS", kEightNone9600);
}

CatalogEntry MettlerSb32001Entry() {
    return Entry("mettler-sb32001", "sb32001", "SB32001, 32.1 kg", "WbalanceMettlerSB32001",
                 kSevenEven2400);
}

}  // namespace simulator
