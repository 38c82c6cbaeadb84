#include "simulator/Switches.h"

#include <algorithm>
#include <stdexcept>

namespace simulator {
namespace {

std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const auto& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all;
}

void Check(const SwitchDescription& description, const std::string& value) {
    if (description.isTime && !ParseTime(value))
        throw std::invalid_argument("the switch " + description.name +
                                    " takes a time such as 500ms or 10s, not \"" + value + "\"");
    const auto& allowed = description.allowed;
    if (!allowed.empty() && std::find(allowed.begin(), allowed.end(), value) == allowed.end())
        throw std::invalid_argument("the switch " + description.name + " takes one of " +
                                    Joined(allowed) + ", not \"" + value + "\"");
}

}  // namespace

Switches::Switches(std::vector<SwitchDescription> descriptions)
    : descriptions_(std::move(descriptions)) {
    for (const auto& each : descriptions_)
        values_[each.name] = each.initial;
}

void Switches::Choose(const std::string& setting) {
    const std::size_t equals = setting.find('=');
    const SwitchDescription& description = Describe(setting.substr(0, equals));
    const std::string value = equals == std::string::npos ? "on" : setting.substr(equals + 1);
    Check(description, value);
    values_[description.name] = value;
}

const SwitchDescription& Switches::Describe(const std::string& name) const {
    std::vector<std::string> names;
    for (const auto& each : descriptions_) {
        if (each.name == name) return each;
        names.push_back(each.name);
    }
    throw std::invalid_argument("this instrument has no switch \"" + name + "\"; it has " +
                                (names.empty() ? "none" : Joined(names)));
}

SwitchDescription OnOff(const std::string& name, bool initiallyOn, const std::string& sentence) {
    return {name, initiallyOn ? "on" : "off", {"on", "off"}, sentence, false};
}

}  // namespace simulator
