#include "simulator/BalanceSettings.h"

#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {
namespace {

void apply(const Switches& switches, const std::string& name, double& value) {
    const std::string& text = switches.text(name);
    if (text.empty()) return;
    const auto number = parseNumber(text);
    if (!number || *number < 0)
        throw std::invalid_argument("the switch " + name +
                                    " takes a number that is not below zero, not \"" + text + "\"");
    value = *number;
}

}  // namespace

const std::vector<SwitchDescription>& balanceSwitches() {
    static const std::vector<SwitchDescription> all = {
        {"capacity", "", {}, "largest load in grams; above it comes overload"},
        {"readability", "", {}, "step of the display in grams"},
        {"noise", "", {}, "standard deviation of a reading in grams"},
        {"drift", "", {}, "grams per hour by which the reading creeps away"},
        {"settling", "150ms", {}, "time constant with which the pan follows the load", true},
    };
    return all;
}

void applyBalanceSwitches(const Switches& switches, BalanceData& data) {
    apply(switches, "capacity", data.capacity);
    apply(switches, "readability", data.readability);
    apply(switches, "noise", data.noise);
    apply(switches, "drift", data.driftPerHour);
    data.settling = switches.time("settling");
    if (data.readability <= 0) throw std::invalid_argument("the readability must be above zero");
    if (data.settling <= Time(0)) throw std::invalid_argument("the settling time is above zero");
}

}  // namespace simulator
