#include "InstrumentList.h"

#include <iomanip>

#include "simulator/BalanceSettings.h"
#include "simulator/Catalog.h"
#include "simulator/Fault.h"

namespace {

constexpr int nameWidth = 30;

void writeRow(std::ostream& out, const std::string& name, const std::string& sentence) {
    out << "  " << std::left << std::setw(nameWidth) << name << " " << sentence << "\n";
}

std::string choices(const simulator::SwitchDescription& each) {
    if (each.allowed.empty())
        return each.name + "=" + (each.initial.empty() ? "..." : each.initial);
    std::string text = each.name + "=";
    for (const auto& value : each.allowed)
        text += (&value == &each.allowed.front() ? "" : "|") + value;
    return text;
}

void writeSwitches(std::ostream& out, const std::vector<simulator::SwitchDescription>& switches) {
    for (const auto& each : switches) {
        const bool told = each.allowed.empty();
        writeRow(out, choices(each), each.sentence + (told ? "" : " (" + each.initial + ")"));
    }
}

}  // namespace

void writeInstruments(std::ostream& out) {
    for (const auto& entry : simulator::catalog()) {
        out << entry.name << ": " << entry.maker << ", " << entry.model << "; " << entry.line.text()
            << "; " << entry.driverClass << "\n";
        writeSwitches(out, entry.switches);
        out << "\n";
    }
    out << "Switches of every instrument (--with NAME=VALUE):\n";
    writeSwitches(out, simulator::balanceSwitches());
    out << "\nFaults of every instrument (--fault NAME[=VALUE][@START[+DURATION]]):\n";
    for (const auto& fault : simulator::faults())
        writeRow(out, fault.name + (fault.initial.empty() ? "" : "=" + fault.initial),
                 fault.sentence);
}
