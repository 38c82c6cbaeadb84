#include "simulator/Switches.h"

#include <algorithm>
#include <stdexcept>

namespace simulator {
namespace {

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const auto& text : texts)
        all += (all.empty() ? "" : ", ") + text;
    return all;
}

void check(const SwitchDescription& description, const std::string& value) {
    if (description.isTime && !parseTime(value))
        throw std::invalid_argument("the switch " + description.name +
                                    " takes a time such as 500ms or 10s, not \"" + value + "\"");
    const auto& allowed = description.allowed;
    if (!allowed.empty() && std::find(allowed.begin(), allowed.end(), value) == allowed.end())
        throw std::invalid_argument("the switch " + description.name + " takes one of " +
                                    joined(allowed) + ", not \"" + value + "\"");
}

}  // namespace

Switches::Switches(std::vector<SwitchDescription> descriptions)
    : descriptions_(std::move(descriptions)) {
    for (const auto& each : descriptions_)
        values_[each.name] = each.initial;
}

void Switches::choose(const std::string& setting) {
    const std::size_t equals = setting.find('=');
    const SwitchDescription& description = describe(setting.substr(0, equals));
    const std::string value = equals == std::string::npos ? "on" : setting.substr(equals + 1);
    check(description, value);
    values_[description.name] = value;
}

const SwitchDescription& Switches::describe(const std::string& name) const {
    std::vector<std::string> names;
    for (const auto& each : descriptions_) {
        if (each.name == name) return each;
        names.push_back(each.name);
    }
    throw std::invalid_argument("this instrument has no switch \"" + name + "\"; it has " +
                                (names.empty() ? "none" : joined(names)));
}

SwitchDescription onOff(const std::string& name, bool initiallyOn, const std::string& sentence) {
    return {name, initiallyOn ? "on" : "off", {"on", "off"}, sentence, false};
}

}  // namespace simulator
