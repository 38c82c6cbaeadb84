// Setra EL-2000S. Its manual is not at hand: the line is the one that hosts know, the switches
// offer the L-series' line and the EL-410S's tare.
//   > "#"   < "1+    12.34 g"   at rest; "U-     0.50 g" while the pan moves
//           < "1+      HHH g"   out of range; "LLL" below it
//   > "T"   no answer

#include "simulator/Catalog.h"
#include "simulator/instruments/SignedReading.h"

namespace simulator {
namespace {

class SetraEl2000s : public SignedReading {
 public:
    SetraEl2000s(BalanceModel& model, const Switches& switches)
        : SignedReading(model, switches, "#", switches.Text("tare-command")) {}

 protected:
    std::string Line(const Indication& indication) const override {
        if (ChosenSwitches().Text("form") == "marked") return SignedReading::Line(indication);
        // Sign, six digits with their point, blank, mode, unit, one more character: "+ 12.34 NG "
        return Sign(indication) + RightAligned(Number(indication), 7) + " NG ";
    }
};

std::vector<SwitchDescription> SetraSwitches() {
    auto switches = SignedReadingSwitches();
    switches.push_back({"form",
                        "marked",
                        {"marked", "l-series"},
                        "the line: \"1+ 12.34 g\", or \"+ 12.34 NG\" of the L-series"});
    switches.push_back({"tare-command", "T", {"T", "$t"}, "what tares; the EL-410S has $t"});
    return switches;
}

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceSetra_EL_2000S>() {
    CatalogEntry entry;
    entry.maker = "Setra";
    entry.model = "EL-2000S, 2000 g";
    entry.line = {2400, 8, Parity::None, 1, FlowControl::None};
    entry.balance.capacity = 2000;
    entry.balance.lowestLoad = -200;
    entry.balance.zeroRange = 40;
    entry.switches = SetraSwitches();
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new SetraEl2000s(model, switches));
    };
    return entry;
}

}  // namespace simulator
