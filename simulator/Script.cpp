#include "simulator/Script.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {
namespace {

Time TimeIn(const std::string& word, Time before) {
    const bool isRelative = word[0] == '+';
    const auto time = ParseTime(word.substr(isRelative ? 1 : 0));
    if (!time)
        throw std::invalid_argument("\"" + word +
                                    "\" is no time; a line begins with a time such as 500ms, 2s "
                                    "or, from the line before, +2s");
    return isRelative ? before + *time : *time;
}

}  // namespace

Script ReadScript(std::istream& text, const std::string& name) {
    Script script;
    std::string line;
    Time before{0};
    for (int number = 1; std::getline(text, line); ++number) {
        const std::string words = SingleSpaced(CutAt(line, '#').first);
        if (words.empty()) continue;
        const std::string place = name + ":" + std::to_string(number);
        try {
            const auto [time, change] = FirstWord(words);
            before = TimeIn(time, before);
            script.push_back({before, Change::Parse(change), place});
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(place + ": " + error.what());
        }
    }
    std::stable_sort(script.begin(), script.end(),
                     [](const ScriptStep& a, const ScriptStep& b) { return a.at < b.at; });
    return script;
}

Script ReadScriptFile(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("the script " + path + ": " + std::strerror(errno));
    Script script = ReadScript(file, path);
    if (file.bad()) throw std::runtime_error("the script " + path + " cannot be read");
    return script;
}

}  // namespace simulator
