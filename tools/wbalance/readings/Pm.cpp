// Mettler PM, standard protocol; a PM with the MT-SICS option answers as described there.
//
//   < "S      -12.34 g\r\n"  stable            < "SD      12.34 g\r\n"  dynamic
//   < "SI\r\n"               no valid value    < "SI+\r\n" "SI-\r\n"    overload, underload

#include "Pm.h"

#include "Fields.h"
#include "Interpreter.h"
#include "MtSics.h"

namespace tool {
namespace {

// "S", "12.50", "g"
Reading WithValue(const std::vector<std::string>& words, Stability stability,
                  const std::string& answer) {
    return TruncatedIfCut(WeightIn(words.size() > 2 ? words[2] : "", "g", words[1], stability),
                          answer);
}

}  // namespace

Reading ReadPm(const std::string& answer) {
    const auto lines = LinesOf(answer);
    const auto words = WordsOf(lines.empty() ? "" : lines.front());
    if (words.empty()) return {};
    if (words[0] == "SI+") return NoWeight(Meaning::Overload);
    if (words[0] == "SI-") return NoWeight(Meaning::Underload);
    if (words[0] == "SI" && words.size() == 1) return NoWeight(Meaning::NotStable);
    const bool hasValue = words.size() >= 2 && words.size() <= 3 && IsNumber(words[1]);
    if (words[0] == "S" && hasValue) return WithValue(words, Stability::Stable, answer);
    if (words[0] == "SD" && hasValue) return WithValue(words, Stability::Dynamic, answer);
    return ReadMtSics(answer);
}

}  // namespace tool
