// Scale House ALD tickets: lines with a number, "g" and a word for what it is.
//
//   < " 123.40 g N\r\n"   the net weight; without one the first weight that is not the tare (T), if
//                          the tare is zero
//   What stands in front of a "PROJ" belongs to the ticket before.

#include "Ticket.h"

#include <optional>

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

struct Entry {
    std::string digits;
    std::string unit;
    std::string legend;  ///< the word behind the unit
    bool moving = false;
};

std::optional<Entry> EntryOf(const std::string& line) {
    const auto words = WordsOf(line);
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (!IsNumber(words[i]) || IsNumber(words[i + 1])) continue;
        return Entry{words[i], words[i + 1], i + 2 < words.size() ? words[i + 2] : "",
                     line.find('?') != std::string::npos};
    }
    return std::nullopt;
}

Reading ReadingOf(const Entry& entry) {
    return WeightIn(entry.unit, "g", entry.digits,
                    entry.moving ? Stability::Dynamic : Stability::Unknown);
}

// The legend of the first line, where it is one that only tickets have.
bool HasLegend(const std::string& answer) {
    const auto lines = LinesOf(answer);
    const auto words = WordsOf(lines.empty() ? "" : lines.front());
    return words.size() > 2 &&
           (words[2] == "N" || words[2] == "G" || words[2] == "T" || words[2] == "NET");
}

}  // namespace

Reading ReadTicket(const std::string& answer) {
    const std::size_t start = answer.find("PROJ");
    std::optional<Entry> first;
    bool tareInUse = false;
    for (const auto& line : LinesOf(start == std::string::npos ? answer : answer.substr(start))) {
        const auto entry = EntryOf(line);
        if (!entry) continue;
        if (entry->legend == "TOTAL")
            return NoWeight(Meaning::NotUnderstood, "the line shows an accumulated total");
        if (entry->legend.rfind('N', 0) == 0) return ReadingOf(*entry);
        const bool isTare = entry->legend.rfind('T', 0) == 0;
        if (isTare) tareInUse = ReadingOf(*entry).Value() != 0.0;
        if (!isTare && !first) first = entry;
    }
    if (tareInUse)
        return NoWeight(Meaning::NotUnderstood,
                        "a tare is in use, but no net weight is printed: have its line printed");
    return first ? ReadingOf(*first) : Reading{};
}

bool IsTicket(const std::string& answer) {
    if (answer.find("PROJ") == std::string::npos && !HasLegend(answer)) return false;
    const Meaning meaning = ReadTicket(answer).meaning;
    return meaning == Meaning::Weight || meaning == Meaning::OtherUnit;
}

}  // namespace tool
