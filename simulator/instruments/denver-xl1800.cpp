// Denver Instrument XL-1800. Its manual is not at hand: the line is the one that hosts know, and
// the switches offer what a relative of it sends.
//   > "?1"  < "1+    12.34 g"    at rest; "U-     0.50 g" while the pan moves
//   > "T"   no answer

#include "simulator/Catalog.h"
#include "simulator/instruments/SignedReading.h"

namespace simulator {
namespace {

class DenverXl1800 : public SignedReading {
 public:
    DenverXl1800(BalanceModel& model, const Switches& switches)
        : SignedReading(model, switches, "?1", "T") {}

 protected:
    std::string Line(const Indication& indication) const override {
        const std::string timeLine = ChosenSwitches().IsOn("time-line") ? "09:10:37\r\n" : "";
        const std::string& form = ChosenSwitches().Text("form");
        const std::string signAndNumber = Sign(indication) + RightAligned(Number(indication), 10);
        if (form == "spaced") return timeLine + (indication.stable ? "1 " : "U ") + signAndNumber;
        if (form == "bare") return timeLine + signAndNumber;
        return timeLine + SignedReading::Line(indication);
    }
};

std::vector<SwitchDescription> DenverSwitches() {
    auto switches = SignedReadingSwitches();
    switches.push_back(
        {"form",
         "marked",
         {"marked", "spaced", "bare"},
         "the line: \"1+ 12.34 g\", \"1 + 12.34\" as a related model sends it, or \"+ 12.34\""});
    switches.push_back(OnOff("time-line", false, "sends the time of day ahead of every reading"));
    return switches;
}

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceDIC_XL1800>() {
    CatalogEntry entry;
    entry.maker = "Denver Instrument";
    entry.model = "XL-1800, 1800 g";
    entry.line = {2400, 8, Parity::None, 1, FlowControl::None};
    entry.balance.capacity = 1800;
    entry.balance.lowestLoad = -180;
    entry.balance.zeroRange = 36;
    entry.switches = DenverSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new DenverXl1800(model, switches));
    };
    return entry;
}

}  // namespace simulator
