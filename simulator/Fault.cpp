#include "simulator/Fault.h"

#include <stdexcept>
#include <tuple>

#include "simulator/Text.h"
#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

[[noreturn]] void Refuse(const std::string& text, const std::string& why) {
    throw std::invalid_argument("fault \"" + text + "\": " + why +
                                "; a fault is written NAME[=VALUE][@START[+DURATION]] or "
                                "NAME[=VALUE] [at START] [for DURATION]");
}

const FaultDescription& Describe(const std::string& name, const std::string& text) {
    std::string names;
    for (const auto& each : Faults()) {
        if (each.name == name) return each;
        names += (names.empty() ? "" : ", ") + each.name;
    }
    Refuse(text, "there is no such fault; there are " + names);
}

Time TimeIn(const std::string& part, const std::string& text) {
    const auto time = ParseTime(part);
    if (!time) Refuse(text, "\"" + part + "\" is no time such as 500ms or 2s");
    return *time;
}

/// Checks the value and completes the name of a device.
void SettleValue(Fault& fault, const std::string& text) {
    if (fault.name == "late") TimeIn(fault.value, text);
    if ((fault.name == "truncated" || fault.name == "noise") &&
        !ParseWholeNumber(fault.value, 0, 9999))
        Refuse(text, "the value is a number of characters");
    if (fault.name != "unplug" || fault.value.empty()) return;
    const auto device = ServedDevice(fault.value);
    if (!device) Refuse(text, "the value is a device such as ttyUSB1");
    fault.value = *device;
}

/// NAME[=VALUE][@START[+DURATION]]
Fault ParseCompact(const std::string& word, const std::string& text) {
    const auto [what, when] = CutAt(word, '@');
    const auto [name, value] = CutAt(what, '=');
    const FaultDescription& description = Describe(name, text);
    Fault fault;
    fault.name = description.name;
    fault.value = value.value_or(description.initial);
    if (when) {
        const auto [start, duration] = CutAt(*when, '+');
        fault.from = TimeIn(start, text);
        if (duration) fault.until = fault.from + TimeIn(*duration, text);
    }
    return fault;
}

}  // namespace

Fault Fault::Parse(const std::string& text) {
    auto [word, rest] = FirstWord(SingleSpaced(text));
    Fault fault = ParseCompact(word, text);
    std::optional<Time> duration;
    while (!rest.empty()) {
        std::tie(word, rest) = FirstWord(rest);
        std::string value;
        std::tie(value, rest) = FirstWord(rest);
        if (word == "at")
            fault.from = TimeIn(value, text);
        else if (word == "for")
            duration = TimeIn(value, text);
        else if (word == "as" && fault.name == "unplug")
            fault.value = value;
        else
            Refuse(text, "\"" + word + "\" is not understood");
    }
    if (duration) fault.until = fault.from + *duration;
    SettleValue(fault, text);
    return fault;
}

Fault Fault::ShiftedBy(Time start) const {
    Fault shifted = *this;
    shifted.from += start;
    if (shifted.until) *shifted.until += start;
    return shifted;
}

const std::vector<FaultDescription>& Faults() {
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
