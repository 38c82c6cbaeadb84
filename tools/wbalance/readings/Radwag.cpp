// Radwag frames of 19 characters: command 0-2, stability 3, sign 5, mass 6-14, unit 16-18.
//
//   < "S    -      8.5 g  \r\n"   stable        < "SI ?       18.5 kg \r\n"   "?" not stable
//   < "S  ^      0.000 g  \r\n"   "^" overload, "v" underload; the mass means nothing
//   < "S A\r\n"  in progress      < "S I\r\n" "SI I\r\n"  not now      < "S E\r\n"  not stable in
//   time

#include "Radwag.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

using Words = std::vector<std::string>;

Reading ReadFrame(Words::const_iterator word, Words::const_iterator end) {
    Stability stability = Stability::Stable;
    if (word != end && *word == "^") return NoWeight(Meaning::Overload);
    if (word != end && *word == "v") return NoWeight(Meaning::Underload);
    if (word != end && *word == "?") {
        stability = Stability::Dynamic;
        ++word;
    }
    std::string sign;
    if (word != end && *word == "-") sign = *word++;
    if (word == end || !IsNumber(*word)) return {};
    const std::string digits = sign + *word++;
    if (word == end) return NoWeight(Meaning::Truncated, "the unit is missing");
    return WeightIn(*word, "g", digits, stability);
}

Reading ReadLine(const Words& words) {
    if (words[0] == "ES") return NoWeight(Meaning::InstrumentError, "ES: command not recognised");
    if (words[0] != "S" && words[0] != "SI") return {};
    if (words.size() == 2 && words[1] == "I")
        return NoWeight(Meaning::NotStable, "the command is not accessible now");
    if (words.size() == 2 && words[1] == "E") return NoWeight(Meaning::NotStable);
    return ReadFrame(words.begin() + 1, words.end());
}

}  // namespace

Reading ReadRadwag(const std::string& answer) {
    bool inProgress = false;
    for (const auto& line : LinesOf(answer)) {
        const auto words = WordsOf(line);
        if (words.empty()) continue;
        inProgress = words == Words{"S", "A"};
        if (!inProgress) return ReadLine(words);
    }
    return inProgress ? NoWeight(Meaning::NotStable, "the command was still in progress")
                      : Reading{};
}

}  // namespace tool
