#include "simulator/Change.h"

#include <functional>
#include <map>
#include <stdexcept>

#include "simulator/Text.h"
#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

[[noreturn]] void Refuse(const std::string& text, const std::string& form) {
    throw std::invalid_argument("\"" + text + "\": it is written " + form);
}

Change LoadChange(const std::string& words, const std::string& rest) {
    const auto grams = ParseNumber(rest);
    if (!grams) Refuse(words, "load GRAMS, such as load 12.34");
    Change change;
    change.grams = *grams;
    return change;
}

Change SettingChange(const std::string& setting) {
    Change change;
    change.kind = Change::Kind::Setting;
    change.text = setting;
    return change;
}

/// Noise and drift are switches that are turned so often that they have words of their own.
Change NumberChange(const std::string& words, const std::string& rest) {
    const std::string name = FirstWord(words).first;
    if (!ParseNumber(rest)) Refuse(words, name + " NUMBER, such as " + name + " 0.02");
    return SettingChange(name + "=" + rest);
}

Change SwitchChange(const std::string& words, const std::string& rest) {
    if (rest.empty() || rest.find(' ') != std::string::npos)
        Refuse(words, "switch NAME=VALUE, such as switch unit=kg");
    return SettingChange(rest);
}

Change FaultChange(const std::string& fault) {
    Change change;
    change.kind = Change::Kind::Fault;
    change.fault = Fault::Parse(fault);
    return change;
}

Change EndChange(const std::string& /*words*/, const std::string& rest) {
    Change change;
    change.kind = Change::Kind::EndFaults;
    if (!rest.empty()) change.text = Fault::Parse(rest).name;
    return change;
}

Change PlugInChange(const std::string& words, const std::string& rest) {
    const auto [as, name] = FirstWord(rest);
    const auto device = ServedDevice(name);
    const bool isRight = rest.empty() || (as == "as" && device);
    if (!isRight) Refuse(words, "plug-in [as DEVICE], such as plug-in as ttyUSB1");
    Change change;
    change.kind = Change::Kind::PlugIn;
    change.text = device.value_or("");
    return change;
}

Change PressChange(const std::string& words, const std::string& rest) {
    static const std::map<std::string, Key> keys = {
        {"print", Key::Print}, {"tare", Key::Tare}, {"zero", Key::Zero}};
    const auto key = keys.find(rest);
    if (key == keys.end()) Refuse(words, "press print, press tare or press zero");
    Change change;
    change.kind = Change::Kind::Press;
    change.key = key->second;
    return change;
}

using Parser = std::function<Change(const std::string& words, const std::string& rest)>;

const std::map<std::string, Parser>& Parsers() {
    static const std::map<std::string, Parser> all = {
        {"load", LoadChange},
        {"noise", NumberChange},
        {"drift", NumberChange},
        {"switch", SwitchChange},
        {"fault", [](const std::string&, const std::string& rest) { return FaultChange(rest); }},
        {"end", EndChange},
        {kUnplug, [](const std::string& words, const std::string&) { return FaultChange(words); }},
        {"plug-in", PlugInChange},
        {"press", PressChange},
    };
    return all;
}

}  // namespace

Change Change::Parse(const std::string& text) {
    const std::string words = SingleSpaced(text);
    const auto [verb, rest] = FirstWord(words);
    const auto parser = Parsers().find(verb);
    if (parser != Parsers().end()) return parser->second(words, rest);
    std::string verbs;
    for (const auto& each : Parsers())
        verbs += (verbs.empty() ? "" : ", ") + each.first;
    throw std::invalid_argument("\"" + verb + "\" is nothing that can be done; there are " + verbs);
}

}  // namespace simulator
