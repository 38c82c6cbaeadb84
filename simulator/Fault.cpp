#include "simulator/Fault.h"

#include <stdexcept>
#include <tuple>

#include "simulator/Text.h"
#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& why) {
    throw std::invalid_argument("fault \"" + text + "\": " + why +
                                "; a fault is written NAME[=VALUE][@START[+DURATION]] or "
                                "NAME[=VALUE] [at START] [for DURATION]");
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

/// Checks the value and completes the name of a device.
void settleValue(Fault& fault, const std::string& text) {
    if (fault.name == "late") timeIn(fault.value, text);
    if ((fault.name == "truncated" || fault.name == "noise") &&
        !parseWholeNumber(fault.value, 0, 9999))
        refuse(text, "the value is a number of characters");
    if (fault.name != "unplug" || fault.value.empty()) return;
    const auto device = servedDevice(fault.value);
    if (!device) refuse(text, "the value is a device such as ttyUSB1");
    fault.value = *device;
}

/// NAME[=VALUE][@START[+DURATION]]
Fault parseCompact(const std::string& word, const std::string& text) {
    const auto [what, when] = cutAt(word, '@');
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
    return fault;
}

}  // namespace

Fault Fault::parse(const std::string& text) {
    auto [word, rest] = firstWord(singleSpaced(text));
    Fault fault = parseCompact(word, text);
    std::optional<Time> duration;
    while (!rest.empty()) {
        std::tie(word, rest) = firstWord(rest);
        std::string value;
        std::tie(value, rest) = firstWord(rest);
        if (word == "at")
            fault.from = timeIn(value, text);
        else if (word == "for")
            duration = timeIn(value, text);
        else if (word == "as" && fault.name == "unplug")
            fault.value = value;
        else
            refuse(text, "\"" + word + "\" is not understood");
    }
    if (duration) fault.until = fault.from + *duration;
    settleValue(fault, text);
    return fault;
}

Fault Fault::shiftedBy(Time start) const {
    Fault shifted = *this;
    shifted.from += start;
    if (shifted.until) *shifted.until += start;
    return shifted;
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
