// Scale House ALD: a ticket of several lines in answer to "P". Its form is not documented; what is
// here holds the marks that are known: "g N" behind the net weight, "g T" behind the tare.
//
//   > "P"   < "PROJ 12", " 130.4 g", " 7.0 g T", " 123.4 g N"
//   > "Z"   zero
//   > "T"   tare

#include "simulator/instruments/scale-house.h"

namespace simulator {
namespace {

class ScaleHouseTicket : public Dialect {
 public:
    ScaleHouseTicket(BalanceModel& model, const Switches& switches)
        : Dialect(model, "\r\n"), switches_(switches) {
        onPlain("P", [this] { print(); });
        onPlain("Z", [this] {
            balance().zero();
            printUnasked();
        });
        onPlain("T", [this] {
            balance().tare();
            printUnasked();
        });
    }

 protected:
    void unknown(const std::string&) override {}
    void printKey() override { print(); }

 private:
    void printUnasked() {
        if (switches_.isOn("prints-after-tare")) print();
    }

    void print() {
        const Reading net = balance().read();
        if (net.range != Reading::Range::inside) return say("ERR");
        Reading gross = net;
        gross.value += balance().tareWeight() / balance().data().gramsPerUnit;
        const std::string& ticket = switches_.text("ticket");
        if (ticket == "net-word") return say(weight(net.digits(), " NET"));
        if (ticket == "total-word") return say(weight(gross.digits(), " TOTAL"));
        if (ticket == "full" || ticket == "no-net-line") {
            say("PROJ 12");
            say(weight(gross.digits(), ""));
        }
        if (ticket != "net-line-only") say(weight(balance().tareDigits(), " T"));
        if (ticket == "tare-line-first") say(weight(gross.digits(), ""));
        if (ticket == "full" || ticket == "net-line-only") say(weight(net.digits(), " N"));
    }

    std::string weight(const std::string& digits, const std::string& legend) const {
        const std::string gap = switches_.isOn("wide-gap") ? "  " : " ";
        return " " + digits + gap + balance().data().unit + legend;
    }

    Switches switches_;
};

}  // namespace

CatalogEntry scaleHouse() {
    CatalogEntry entry;
    entry.name = "scale-house";
    entry.maker = "Scale House";
    entry.model = "ALD, 610 g";
    entry.driverClass = "WbalanceScaleHouseALD";
    entry.line = {2400, 7, Parity::none, 1, FlowControl::none};
    entry.switches = {
        {"ticket",
         "full",
         {"full", "no-net-line", "tare-line-first", "net-line-only", "net-word", "total-word"},
         "lines of the ticket; the last two are single lines of relatives"},
        onOff("wide-gap", false, "two blanks before the unit"),
        onOff("prints-after-tare", false, "prints a ticket after Z and T as well"),
    };
    entry.createDialect = [](BalanceModel& model, const Switches& switches) {
        return std::unique_ptr<Dialect>(new ScaleHouseTicket(model, switches));
    };
    return entry;
}

}  // namespace simulator
