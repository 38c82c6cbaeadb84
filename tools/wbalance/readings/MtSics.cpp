// MT-SICS, as Mettler Toledo's generic, PR, XS and SB balances speak it.
//
//   < "S S     100.00 g\r\n"      stable        < "S D     100.03 g\r\n"   dynamic
//   < "S I\r\n"                   busy, or not stable in time
//   < "S +\r\n"  "S -\r\n"        overload, underload
//   < "ES\r\n" "ET\r\n" "EL\r\n"  not recognised, parity error or break, not executable
//   < "I4 A \"1126493049\"\r\n"   the balance has been reset or switched on

#include "MtSics.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

Reading WithoutValue(const std::string& status) {
    if (status == "I") return NoWeight(Meaning::NotStable);
    if (status == "+") return NoWeight(Meaning::Overload);
    if (status == "-") return NoWeight(Meaning::Underload);
    if (status == "L") return NoWeight(Meaning::InstrumentError, "L: command can't be executed");
    return {};
}

Reading WithValue(const std::vector<std::string>& words) {
    if ((words[1] != "S" && words[1] != "D") || !IsNumber(words[2])) return {};
    return WeightIn(words.size() > 3 ? words[3] : "", "g", words[2],
                    words[1] == "S" ? Stability::Stable : Stability::Dynamic);
}

Reading ReadLine(const std::string& line) {
    if (line == "ES") return NoWeight(Meaning::InstrumentError, "ES: command not recognised");
    if (line == "ET")
        return NoWeight(Meaning::InstrumentError, "ET: parity error; check the line settings");
    if (line == "EL") return NoWeight(Meaning::InstrumentError, "EL: command can't be executed");
    const auto words = WordsOf(line);
    if (words.empty() || words[0] != "S") return {};
    if (words.size() == 2) return WithoutValue(words[1]);
    return words.size() == 3 || words.size() == 4 ? WithValue(words) : Reading{};
}

}  // namespace

Reading ReadMtSics(const std::string& answer) {
    Reading announced;
    for (const auto& line : LinesOf(answer)) {
        if (line.empty()) continue;
        if (line.rfind("I4 ", 0) != 0) return TruncatedIfCut(ReadLine(line), answer);
        announced.remark = "the balance announced itself: " + line;
    }
    return announced;
}

}  // namespace tool
