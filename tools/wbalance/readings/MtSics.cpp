// MT-SICS, as Mettler Toledo's generic, PR, XS and SB balances speak it.
//
//   < "S S     100.00 g\r\n"    stable        < "S D     100.03 g\r\n"   dynamic
//   < "S I\r\n"                 busy, or not stable in time
//   < "S +\r\n"  "S -\r\n"      overload, underload
//   < "ES\r\n" "ET\r\n" "EL\r\n"  command not recognised, parity error or break, not executable
//   < "I4 A \"1126493049\"\r\n" the balance has been reset or switched on

#include "Dialect.h"
#include "Fields.h"

namespace tool {
namespace {

Reading Error(const std::string& code) {
    Reading reading;
    reading.meaning = Meaning::InstrumentError;
    if (code == "ES") reading.remark = "ES: command not recognised";
    if (code == "ET") reading.remark = "ET: parity error or break; check the line settings";
    if (code == "EL") reading.remark = "EL: command can't be executed";
    return reading;
}

Reading WithoutValue(char status) {
    Reading reading;
    if (status == 'I') reading.meaning = Meaning::NotStable;
    if (status == '+') reading.meaning = Meaning::Overload;
    if (status == '-') reading.meaning = Meaning::Underload;
    if (status == 'L') reading = Error("EL");
    return reading;
}

Reading WithValue(const std::vector<std::string>& words) {
    Reading reading;
    if ((words[1] != "S" && words[1] != "D") || !IsNumber(words[2])) return reading;
    reading.stability = words[1] == "S" ? Stability::Stable : Stability::Dynamic;
    reading.digits = words[2];
    reading.unit = words.size() > 3 ? words[3] : "";
    reading.meaning = reading.unit == "g" ? Meaning::Weight : Meaning::OtherUnit;
    return reading;
}

bool IsAnnouncement(const std::string& line) {
    return line.rfind("I4 ", 0) == 0;
}

Reading ReadLine(const std::string& line) {
    if (line == "ES" || line == "ET" || line == "EL") return Error(line);
    const auto words = WordsOf(line);
    if (words.empty() || words[0] != "S") return {};
    if (words.size() == 2 && words[1].size() == 1) return WithoutValue(words[1][0]);
    return words.size() == 3 || words.size() == 4 ? WithValue(words) : Reading{};
}

}  // namespace

Reading ReadMtSics(const std::string& answer) {
    Reading announced;
    for (const auto& line : LinesOf(answer)) {
        if (line.empty()) continue;
        if (!IsAnnouncement(line)) return ReadLine(line);
        announced.remark = "the balance announced itself: " + line;
    }
    return announced;
}

}  // namespace tool
