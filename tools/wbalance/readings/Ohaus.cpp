// Ohaus print lines: the weight right-aligned in 9 to 12 columns, unit, "?" while not stable.
//
//   < "       12.73 g    ?\r\n"  Scout Pro       < "      0.01 g ?\r\n"  Explorer
//   < "    207.80 g TOTAL\r\n"   what was accumulated, not what is on the pan
//   < "ES\r\n"                   not stable within 40 s, or not recognised

#include "Ohaus.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

// The narrowest weight column. A number that ends before it has lost digits in front: the reading
// began in the middle of a line.
constexpr std::size_t kNarrowestColumn = 9;

Reading ReadLine(const std::string& line) {
    const auto words = WordsOf(line);
    if (!IsNumber(words[0])) return {};
    if (line.find(words[0]) + words[0].size() < kNarrowestColumn)
        return NoWeight(Meaning::Truncated, "the beginning of the line is missing");
    if (words.back() == "TOTAL")
        return NoWeight(Meaning::NotUnderstood, "the line shows an accumulated total");
    const bool moving = line.find('?') != std::string::npos;
    std::string unit = words.size() > 1 ? words[1] : "";
    while (!unit.empty() && unit.back() == '?')
        unit.pop_back();
    return WeightIn(unit, "g", words[0], moving ? Stability::Dynamic : Stability::Stable);
}

}  // namespace

Reading ReadOhaus(const std::string& answer) {
    for (const auto& line : LinesOf(answer)) {
        if (WordsOf(line).empty()) continue;
        if (Trimmed(line) == "ES")
            return NoWeight(Meaning::InstrumentError, "ES: not stable in time or not recognised");
        return TruncatedIfCut(ReadLine(line), answer);
    }
    return {};
}

}  // namespace tool
