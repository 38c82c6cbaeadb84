#include "simulator/Fault.h"

#include <stdexcept>
#include <tuple>

#include "simulator/Text.h"
#include "simulator/line/DeviceName.h"

namespace simulator {

namespace {

using Value = FaultDescription::Value;

[[noreturn]] void Refuse(const std::string& text, const std::string& why) {
    throw std::invalid_argument("fault \"" + text + "\": " + why +
                                "; a fault is written NAME[=VALUE][@START[+DURATION]] or "
                                "NAME[=VALUE] [at START] [for DURATION]");
}

const FaultDescription& Describe(const std::string& name, const std::string& text) {
    std::string names;
    for (const auto& each : FaultTable()) {
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
void SettleValue(Fault& fault, const FaultDescription& description, const std::string& text) {
    if (description.value == Value::Duration) TimeIn(fault.value, text);
    if (description.value == Value::Count && !ParseWholeNumber(fault.value, 0, 9999))
        Refuse(text, "the value is a number of characters");
    if (description.value != Value::Device || fault.value.empty()) return;
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
    const FaultDescription& description = Describe(fault.name, text);
    std::optional<Time> duration;
    while (!rest.empty()) {
        std::tie(word, rest) = FirstWord(rest);
        std::string value;
        std::tie(value, rest) = FirstWord(rest);
        if (word == "at")
            fault.from = TimeIn(value, text);
        else if (word == "for")
            duration = TimeIn(value, text);
        else if (word == "as" && description.value == Value::Device)
            fault.value = value;
        else
            Refuse(text, "\"" + word + "\" is not understood");
    }
    if (duration) fault.until = fault.from + *duration;
    SettleValue(fault, description, text);
    return fault;
}

Fault Fault::ShiftedBy(Time start) const {
    Fault shifted = *this;
    shifted.from += start;
    if (shifted.until) *shifted.until += start;
    return shifted;
}

FaultEffects EffectsOf(const std::vector<Fault>& faults, Time now) {
    FaultEffects effects;
    // From the last to the first, which then has the last word.
    for (auto fault = faults.rbegin(); fault != faults.rend(); ++fault)
        if (fault->IsActive(now)) Describe(fault->name, fault->name).act(*fault, effects);
    return effects;
}

const std::vector<FaultDescription>& FaultTable() {
    // A row for each fault, in alphabetical order: what is written, and what it does.
    static const std::vector<FaultDescription> table = {
        {"busy", Value::None, "",
         "the pan never comes to rest; commands that wait for this are not carried out",
         [](const Fault&, FaultEffects& effects) { effects.isBusy = true; }},
        {"late", Value::Duration, "1500ms", "answers come later by this time",
         [](const Fault& fault, FaultEffects& effects) {
             effects.delay = *ParseTime(fault.value);
         }},
        {"noise", Value::Count, "5", "this many random characters come before every answer",
         [](const Fault& fault, FaultEffects& effects) {
             effects.rubbish = std::stoul(fault.value);
         }},
        {"overload", Value::None, "", "the load is above the balance's range",
         [](const Fault&, FaultEffects& effects) {
             if (effects.range == Indication::Range::Inside)
                 effects.range = Indication::Range::Over;
         }},
        {"power-cut", Value::None, "",
         "the instrument has no power; with a duration it is switched on again at the end",
         [](const Fault&, FaultEffects& effects) { effects.hasPower = false; }},
        {"silent", Value::None, "", "the instrument does not answer",
         [](const Fault&, FaultEffects& effects) { effects.isSilent = true; }},
        {"truncated", Value::Count, "5", "the host gets only this many characters of every answer",
         [](const Fault& fault, FaultEffects& effects) {
             effects.longestAnswer = std::stoul(fault.value);
         }},
        {"underload", Value::None, "", "the load is below the balance's range",
         [](const Fault&, FaultEffects& effects) { effects.range = Indication::Range::Under; }},
        {kUnplug, Value::Device, "",
         "the port's adapter is pulled out; with a duration it comes back, under the name in the "
         "value if there is one",
         [](const Fault& fault, FaultEffects& effects) {
             effects.isUnplugged = true;
             effects.returnsAs = fault.value;
         }},
    };
    return table;
}

}  // namespace simulator
