#include "simulator/instruments/mettler-toledo.h"

#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

CatalogEntry entry(const std::string& name, const std::string& sicsModel, const std::string& model,
                   const std::string& driverClass, const LineSettings& line) {
    CatalogEntry entry;
    entry.name = name;
    entry.maker = "Mettler Toledo";
    entry.model = model;
    entry.driverClass = driverClass;
    entry.line = line;
    entry.switches = mtSicsSwitches(sicsModel);
    entry.modelBalance = mtSicsBalance;
    entry.createDialect = [](BalanceModel& balance, const Switches& switches) {
        return std::unique_ptr<Dialect>(new MtSics(balance, switches));
    };
    return entry;
}

constexpr LineSettings sevenEven2400{2400, 7, Parity::even, 1, FlowControl::none};
constexpr LineSettings eightNone9600{9600, 8, Parity::none, 1, FlowControl::none};

}  // namespace

CatalogEntry mettlerToledo() {
    return entry("mettler-toledo", "level-1", "MT-SICS balance, 610 g", "WbalanceMettlerToledo",
                 sevenEven2400);
}

CatalogEntry mettlerPr2003() {
    return entry("mettler-pr2003", "pr2003", "PR2003, 2100 g", "WbalanceMettlerPR2003",
                 sevenEven2400);
}

CatalogEntry mettlerXs() {
    return entry("mettler-xs", "xs204", "XS204, 220 g", "WbalanceMettlerXS", eightNone9600);
}

CatalogEntry mettlerSb32001() {
    return entry("mettler-sb32001", "sb32001", "SB32001, 32.1 kg", "WbalanceMettlerSB32001",
                 sevenEven2400);
}

}  // namespace simulator
