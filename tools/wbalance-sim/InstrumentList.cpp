#include "InstrumentList.h"

#include <iomanip>

#include "simulator/BalanceSettings.h"
#include "simulator/Catalog.h"
#include "simulator/Fault.h"

namespace {

constexpr int kNameWidth = 30;

void WriteRow(std::ostream& out, const std::string& name, const std::string& sentence) {
    out << "  " << std::left << std::setw(kNameWidth) << name << " " << sentence << "\n";
}

std::string Choices(const simulator::SwitchDescription& each) {
    if (each.allowed.empty())
        return each.name + "=" + (each.initial.empty() ? "..." : each.initial);
    std::string text = each.name + "=";
    for (const auto& value : each.allowed)
        text += (&value == &each.allowed.front() ? "" : "|") + value;
    return text;
}

void WriteSwitches(std::ostream& out, const std::vector<simulator::SwitchDescription>& switches) {
    for (const auto& each : switches) {
        const bool told = each.allowed.empty();
        WriteRow(out, Choices(each), each.sentence + (told ? "" : " (" + each.initial + ")"));
    }
}

}  // namespace

void WriteInstruments(std::ostream& out) {
    for (const auto& entry : simulator::Catalog()) {
        out << entry.name << ": " << entry.maker << ", " << entry.model << "; " << entry.line.Text()
            << "; " << entry.driverClass << "\n";
        WriteSwitches(out, entry.switches);
        out << "\n";
    }
    out << "Switches of every instrument (--with NAME=VALUE):\n";
    WriteSwitches(out, simulator::BalanceSwitches());
    out << "\nFaults of every instrument (--fault NAME[=VALUE][@START[+DURATION]]):\n";
    for (const auto& fault : simulator::FaultTable())
        WriteRow(out, fault.name + (fault.initial.empty() ? "" : "=" + fault.initial),
                 fault.sentence);
}
