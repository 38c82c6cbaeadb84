#include "simulator/Change.h"

#include <functional>
#include <map>
#include <stdexcept>

#include "simulator/Text.h"
#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

[[noreturn]] void refuse(const std::string& text, const std::string& form) {
    throw std::invalid_argument("\"" + text + "\": it is written " + form);
}

Change loadChange(const std::string& words, const std::string& rest) {
    const auto grams = parseNumber(rest);
    if (!grams) refuse(words, "load GRAMS, such as load 12.34");
    Change change;
    change.grams = *grams;
    return change;
}

Change settingChange(const std::string& setting) {
    Change change;
    change.kind = Change::Kind::setting;
    change.text = setting;
    return change;
}

/// Noise and drift are switches that are turned so often that they have words of their own.
Change numberChange(const std::string& words, const std::string& rest) {
    const std::string name = firstWord(words).first;
    if (!parseNumber(rest)) refuse(words, name + " NUMBER, such as " + name + " 0.02");
    return settingChange(name + "=" + rest);
}

Change switchChange(const std::string& words, const std::string& rest) {
    if (rest.empty() || rest.find(' ') != std::string::npos)
        refuse(words, "switch NAME=VALUE, such as switch unit=kg");
    return settingChange(rest);
}

Change faultChange(const std::string& fault) {
    Change change;
    change.kind = Change::Kind::fault;
    change.fault = Fault::parse(fault);
    return change;
}

Change endChange(const std::string&, const std::string& rest) {
    Change change;
    change.kind = Change::Kind::endFaults;
    if (!rest.empty()) change.text = Fault::parse(rest).name;
    return change;
}

Change plugInChange(const std::string& words, const std::string& rest) {
    const auto [as, name] = firstWord(rest);
    const auto device = servedDevice(name);
    const bool isRight = rest.empty() || (as == "as" && device);
    if (!isRight) refuse(words, "plug-in [as DEVICE], such as plug-in as ttyUSB1");
    Change change;
    change.kind = Change::Kind::plugIn;
    change.text = device.value_or("");
    return change;
}

Change pressChange(const std::string& words, const std::string& rest) {
    static const std::map<std::string, Key> keys = {
        {"print", Key::print}, {"tare", Key::tare}, {"zero", Key::zero}};
    const auto key = keys.find(rest);
    if (key == keys.end()) refuse(words, "press print, press tare or press zero");
    Change change;
    change.kind = Change::Kind::press;
    change.key = key->second;
    return change;
}

using Parser = std::function<Change(const std::string& words, const std::string& rest)>;

const std::map<std::string, Parser>& parsers() {
    static const std::map<std::string, Parser> all = {
        {"load", loadChange},
        {"noise", numberChange},
        {"drift", numberChange},
        {"switch", switchChange},
        {"fault", [](const std::string&, const std::string& rest) { return faultChange(rest); }},
        {"end", endChange},
        {"unplug", [](const std::string& words, const std::string&) { return faultChange(words); }},
        {"plug-in", plugInChange},
        {"press", pressChange},
    };
    return all;
}

}  // namespace

Change Change::parse(const std::string& text) {
    const std::string words = singleSpaced(text);
    const auto [verb, rest] = firstWord(words);
    const auto parser = parsers().find(verb);
    if (parser != parsers().end()) return parser->second(words, rest);
    std::string verbs;
    for (const auto& each : parsers())
        verbs += (verbs.empty() ? "" : ", ") + each.first;
    throw std::invalid_argument("\"" + verb + "\" is nothing that can be done; there are " + verbs);
}

}  // namespace simulator
