// Scale House ALD: a ticket of several lines in answer to "P". Its form is not documented; what is
// here holds the marks that are known: "g N" behind the net weight, "g T" behind the tare.
//
//   > "P"   < "PROJ 12", " 130.4 g", " 7.0 g T", " 123.4 g N"
//   > "Z"   zero
//   > "T"   tare

#include "simulator/Catalog.h"

namespace simulator {
namespace {

class ScaleHouseTicket : public Dialect {
 public:
    ScaleHouseTicket(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        OnPlain("P", [this] { Print(); });
        OnPlain("Z", [this] {
            Balance().Zero();
            PrintUnasked();
        });
        OnPlain("T", [this] {
            Balance().Tare();
            PrintUnasked();
        });
    }

 protected:
    void Unknown(const std::string& /*command*/) override {}
    void PrintKey() override { Print(); }

 private:
    void PrintUnasked() {
        if (switches_.IsOn("prints-after-tare")) Print();
    }

    void Print() {
        const Indication net = Balance().Read();
        if (net.range != Indication::Range::Inside) return Say("ERR");
        Indication gross = net;
        gross.value += Balance().TareWeight() / Balance().Data().gramsPerUnit;
        const std::string& ticket = switches_.Text("ticket");
        if (ticket == "net-word") return Say(Weight(net.Digits(), " NET"));
        if (ticket == "total-word") return Say(Weight(gross.Digits(), " TOTAL"));
        if (ticket == "full" || ticket == "no-net-line") {
            Say("PROJ 12");
            Say(Weight(gross.Digits(), ""));
        }
        if (ticket != "net-line-only") Say(Weight(Balance().TareDigits(), " T"));
        if (ticket == "tare-line-first") Say(Weight(gross.Digits(), ""));
        if (ticket == "full" || ticket == "net-line-only") Say(Weight(net.Digits(), " N"));
    }

    std::string Weight(const std::string& digits, const std::string& legend) const {
        const std::string gap = switches_.IsOn("wide-gap") ? "  " : " ";
        return " " + digits + gap + Balance().Data().unit + legend;
    }

    Switches switches_;
};

}  // namespace

template <>
CatalogEntry EntryOf<WbalanceScaleHouseALD>() {
    CatalogEntry entry;
    entry.maker = "Scale House";
    entry.model = "ALD, 610 g";
    entry.line = {2400, 7, Parity::None, 1, FlowControl::None};
    entry.switches = {
        {"ticket",
         "full",
         {"full", "no-net-line", "tare-line-first", "net-line-only", "net-word", "total-word"},
         "lines of the ticket; the last two are single lines of related models"},
        OnOff("wide-gap", false, "two blanks before the unit"),
        OnOff("prints-after-tare", false, "prints a ticket after Z and T as well"),
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new ScaleHouseTicket(model, switches));
    };
    return entry;
}

}  // namespace simulator
