#include "simulator/BalanceSettings.h"

#include <map>
#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {
namespace {

void Apply(const Switches& switches, const std::string& name, double& value) {
    const std::string& text = switches.Text(name);
    if (text.empty()) return;
    const auto number = ParseNumber(text);
    if (!number || *number < 0)
        throw std::invalid_argument("the switch " + name +
                                    " takes a number that is not below zero, not \"" + text + "\"");
    value = *number;
}

void ApplyUnit(const std::string& unit, BalanceData& data) {
    static const std::map<std::string, double> gramsPerUnit = {
        {"g", 1}, {"kg", 1000}, {"mg", 0.001}, {"oz", 28.349523125}, {"PCS", 1}};
    if (unit.empty()) return;
    data.unit = unit;
    data.gramsPerUnit = gramsPerUnit.at(unit);
    data.countsPieces = unit == "PCS";
}

}  // namespace

const std::vector<SwitchDescription>& BalanceSwitches() {
    static const std::vector<SwitchDescription> all = {
        {"capacity", "", {}, "largest load in grams; above it comes overload"},
        {"readability", "", {}, "step of the display in grams"},
        {"unit", "", {"g", "kg", "mg", "oz", "PCS"}, "unit of the display; PCS: pieces of 1 g"},
        {"noise", "", {}, "standard deviation of a reading in grams"},
        {"drift", "", {}, "grams per hour by which the reading drifts"},
        {"settling", "150ms", {}, "time constant with which the pan follows the load", true},
    };
    return all;
}

void ApplyBalanceSwitches(const Switches& switches, BalanceData& data) {
    Apply(switches, "capacity", data.capacity);
    Apply(switches, "readability", data.readability);
    ApplyUnit(switches.Text("unit"), data);
    Apply(switches, "noise", data.noise);
    Apply(switches, "drift", data.driftPerHour);
    data.settling = switches.TimeOf("settling");
    if (data.readability <= 0) throw std::invalid_argument("the readability must be above zero");
    if (data.settling <= Time(0)) throw std::invalid_argument("the settling time is above zero");
}

}  // namespace simulator
