#include "simulator/Fault.h"

#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {
namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& why) {
    throw std::invalid_argument("fault \"" + text + "\": " + why +
                                "; a fault is written NAME[=VALUE][@START[+DURATION]]");
}

const FaultDescription& describe(const std::string& name, const std::string& text) {
    std::string names;
    for (const auto& each : faults()) {
        if (each.name == name) return each;
        names += (names.empty() ? "" : ", ") + each.name;
    }
    refuse(text, "there is no such fault; there are " + names);
}

Time timeIn(const std::string& part, const std::string& text) {
    const auto time = parseTime(part);
    if (!time) refuse(text, "\"" + part + "\" is no time such as 500ms or 2s");
    return *time;
}

void checkValue(const Fault& fault, const std::string& text) {
    if (fault.name == "late") timeIn(fault.value, text);
    if ((fault.name == "truncated" || fault.name == "noise") &&
        !parseWholeNumber(fault.value, 0, 9999))
        refuse(text, "the value is a number of characters");
}

}  // namespace

Fault Fault::parse(const std::string& text) {
    const auto [what, when] = cutAt(text, '@');
    const auto [name, value] = cutAt(what, '=');
    const FaultDescription& description = describe(name, text);
    Fault fault;
    fault.name = description.name;
    fault.value = value.value_or(description.initial);
    if (when) {
        const auto [start, duration] = cutAt(*when, '+');
        fault.from = timeIn(start, text);
        if (duration) fault.until = fault.from + timeIn(*duration, text);
    }
    checkValue(fault, text);
    return fault;
}

const std::vector<FaultDescription>& faults() {
    static const std::vector<FaultDescription> all = {
        {"busy", "", "the pan never comes to rest and nothing that needs it is carried out"},
        {"late", "1500ms", "answers come late by the value, a time"},
        {"noise", "5", "this many characters of rubbish come ahead of every answer"},
        {"overload", "", "the load is above the balance's range"},
        {"power-cut", "",
         "the mains are off; with a duration they come back and the balance starts "
         "anew"},
        {"silent", "", "the instrument answers nothing"},
        {"truncated", "5", "only this many characters of every answer come"},
        {"underload", "", "the load is below the balance's range"},
        {"unplug", "",
         "the port's adapter is pulled out; with a duration it comes back, as the "
         "device named by the value if there is one"},
    };
    return all;
}

}  // namespace simulator
