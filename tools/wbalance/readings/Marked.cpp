// Denver Instrument XL-1800 and Setra EL-2000S: a stability mark, a sign, the number, a unit.
//
//   < "1+   12.34 g\r\n"   stable       < "U-    0.50 g\r\n"   not stable
//   < "?1+   12.34\r\n"    the request's echo with a sign behind it is no mark
//   < "HHH"  "LLL"         overload, pan off

#include <regex>

#include "Dialect.h"
#include "Fields.h"

namespace tool {

Reading ReadMarked(const std::string& answer) {
    static const std::regex kForm(R"((^|[^0-9?A-Za-z])([1U])([+-]) *([0-9]*\.?[0-9]+|[0-9]+\.) *)"
                                  R"(([A-Za-z]*))");
    std::smatch part;
    if (answer.find("HHH") != std::string::npos) return NoWeight(Meaning::Overload);
    if (answer.find("LLL") != std::string::npos) return NoWeight(Meaning::Underload);
    if (!LooksLikeText(answer) || !std::regex_search(answer, part, kForm)) return {};
    const std::string unit = part[5];
    const std::string digits = (part[3] == "-" ? "-" : "") + part[4].str();
    const bool grams = unit.empty() || unit == "g" || unit == "G";
    const auto stability = part[2] == "1" ? Stability::Stable : Stability::Dynamic;
    return TruncatedIfCut(WeightIn(unit, grams ? unit : "g", digits, stability), answer);
}

}  // namespace tool
