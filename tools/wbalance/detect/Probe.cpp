#include "Probe.h"

#include <algorithm>
#include <cctype>

#include "readings/Dialect.h"
#include "readings/Fields.h"

namespace tool {
namespace {

// An answer that a dialect knows, a weight or a message such as overload.
bool Knows(Dialect dialect, const std::string& answer) {
    const Meaning meaning = dialect(answer).meaning;
    return meaning != Meaning::NotUnderstood && meaning != Meaning::Truncated;
}

bool IsWeight(Dialect dialect, const std::string& answer) {
    const Meaning meaning = dialect(answer).meaning;
    return meaning == Meaning::Weight || meaning == Meaning::OtherUnit;
}

bool StartsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

// > "SI\r\n"  < "S S     100.00 g"  MT-SICS   < "SI ?       18.5 kg "  Radwag
//             < "SD      12.34 g"   PM        < "E01"                 Kern
std::string DriverForImmediate(const std::string& answer) {
    if (StartsWith(answer, "SI ") && Knows(ReadRadwag, answer)) return "radwag";
    if (StartsWith(answer, "E01")) return "kern";
    if (Knows(ReadMtSics, answer) && StartsWith(answer, "S ")) return "mettler-toledo";
    if (StartsWith(answer, "SI+") || StartsWith(answer, "SI-") || IsWeight(ReadPm, answer))
        return "mettler-pm";
    return "";
}

std::string DriverForEscape(const std::string& answer) {
    return Knows(ReadSbi, answer) ? "sartorius" : "";
}

// A name filled up to the length of a print line's text.
bool IsModel(const std::string& line) {
    const bool filledUp = line.size() == 14 || line.size() == 20;
    return filledUp && std::isalpha(static_cast<unsigned char>(line.front())) != 0 &&
           std::any_of(line.begin(), line.end(),
                       [](unsigned char one) { return std::isdigit(one) != 0; });
}

// > ESC "x1_\r\n"  < "LA620S        "  also while a print waits for the pan to come to rest
std::string DriverForModelQuestion(const std::string& answer) {
    const auto lines = LinesOf(answer);
    return lines.size() == 1 && LooksLikeText(answer) && IsModel(lines.front()) ? "sartorius" : "";
}

// > "P\r\n"  < "       12.73 g    ?"  Ohaus   < " 123.40 g N"  Scale House
std::string DriverForPrint(const std::string& answer) {
    const auto lines = LinesOf(answer);
    const auto words = WordsOf(lines.empty() ? "" : lines.front());
    const bool ticket = answer.find("PROJ") != std::string::npos ||
                        (words.size() > 2 && (words[2] == "N" || words[2] == "G" ||
                                              words[2] == "T" || words[2] == "NET"));
    if (ticket && IsWeight(ReadTicket, answer)) return "scale-house";
    return IsWeight(ReadOhaus, answer) ? "ohaus" : "";
}

std::string DriverForDenver(const std::string& answer) {
    return IsWeight(ReadMarked, answer) ? "denver-xl1800" : "";
}

std::string DriverForSetra(const std::string& answer) {
    return IsWeight(ReadMarked, answer) ? "setra-el2000s" : "";
}

std::string DriverForKern(const std::string& answer) {
    return Knows(ReadKern, answer) ? "kern" : "";
}

std::string DriverForGibertini(const std::string& answer) {
    return Knows(ReadGibertini, answer) ? "gibertini" : "";
}

}  // namespace

const std::vector<Probe>& Probes() {
    static const std::vector<Probe> probes = {
        {"SI\r\n",
         DriverForImmediate,
         {"mettler-toledo", "mettler-pm", "mettler-pr2003", "mettler-xs", "mettler-sb32001",
          "radwag"}},
        {"\x1bP\r\n", DriverForEscape, {"sartorius"}},
        {"\x1bx1_\r\n", DriverForModelQuestion, {"sartorius"}},
        {"P\r\n", DriverForPrint, {"ohaus", "scale-house"}},
        {"O8\r\n", DriverForKern, {"kern"}},
        {"?1", DriverForDenver, {"denver-xl1800"}},
        {"#", DriverForSetra, {"setra-el2000s"}},
        {"\rB\r", DriverForGibertini, {"gibertini"}}};
    return probes;
}

std::string DriverForModel(const std::string& answer) {
    if (answer.find("PR") != std::string::npos) return "mettler-pr2003";
    if (answer.find("XS") != std::string::npos) return "mettler-xs";
    if (answer.find("SB") != std::string::npos) return "mettler-sb32001";
    if (answer.find("PM") != std::string::npos) return "mettler-pm";
    return "mettler-toledo";
}

}  // namespace tool
