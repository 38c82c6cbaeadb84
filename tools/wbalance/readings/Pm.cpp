// Mettler PM, standard protocol; a PM with the MT-SICS option answers as described there.
//
//   < "S      -12.34 g\r\n"  stable            < "SD      12.34 g\r\n"  dynamic
//   < "SI\r\n"               no valid value    < "SI+\r\n" "SI-\r\n"    overload, underload

#include "Dialect.h"
#include "Fields.h"

namespace tool {
namespace {

Reading WithValue(const std::vector<std::string>& words, Stability stability) {
    return WeightIn(words.size() > 2 ? words[2] : "", "g", words[1], stability);
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
    if (words[0] == "S" && hasValue) return WithValue(words, Stability::Stable);
    if (words[0] == "SD" && hasValue) return WithValue(words, Stability::Dynamic);
    return ReadMtSics(answer);
}

}  // namespace tool
