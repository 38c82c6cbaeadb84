// Sartorius SBI print lines: 14 characters, or 20 that begin with an identifier of six.
//
//   < "+   123.56 g  \r\n"   sign 0, value 1-9 (position 1 in high resolution), unit 11-13
//   < "+   123.56    \r\n"   no unit: not stable, and its unit is not known
//   < "+ 123.5[6] g  \r\n"   a digit in brackets is not verified; the driver leaves it out
//   < "N     +   123.56 g  \r\n"   N, N1, G# net or gross; T1 a tare; Qnt a count; Stat a state
//   < "      H       \r\n"   H overload, L underload, C calibration, -- final readout, Err 54

#include "Sbi.h"

#include <strings.h>

#include <algorithm>

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

constexpr std::size_t kShortLine = 14;
constexpr std::size_t kLongLine = 20;
constexpr std::size_t kIdentifier = 6;

bool StartsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

bool HasIdentifier(const std::string& line, const char* identifier) {
    return strcasecmp(Trimmed(Field(line, 0, kIdentifier)).c_str(), identifier) == 0;
}

Reading ReadState(const std::string& text) {
    if (text == "H" || text == "High") return NoWeight(Meaning::Overload);
    if (text == "L" || text == "Low") return NoWeight(Meaning::Underload);
    if (text == "C" || StartsWith(text, "Cal")) return NoWeight(Meaning::Calibrating);
    if (text.empty() || text == "--" || text == "OFF") return NoWeight(Meaning::Standby);
    if (StartsWith(text, "Err")) return NoWeight(Meaning::InstrumentError, text);
    return {};
}

Reading ReadData(const std::string& data) {
    std::string number = Trimmed(Field(data, 1, 9));
    number.erase(std::remove_if(number.begin(), number.end(),
                                [](char one) { return one == '[' || one == ']'; }),
                 number.end());
    if (!IsNumber(number) || std::string("+- ").find(data[0]) == std::string::npos)
        return ReadState(Trimmed(data));
    if (data[0] == '-') number.insert(0, "-");
    const std::string unit = Trimmed(Field(data, 10));
    if (!unit.empty()) return WeightIn(unit, "g", number, Stability::Stable);
    return WeightIn(unit, unit, number, Stability::Dynamic);
}

// "LA620S" and blanks: the answer to a question for the model, which a balance fills up, too.
bool IsName(const std::string& identifier, const std::string& data) {
    return Trimmed(data).empty() && identifier.size() > 2;
}

Reading ReadIdentified(const std::string& line) {
    const std::string identifier = Trimmed(Field(line, 0, kIdentifier));
    const std::string data = Field(line, kIdentifier);
    if (identifier == "Stat") return ReadState(Trimmed(data));
    if (identifier == "Qnt") return NoWeight(Meaning::OtherUnit, "a count of pieces");
    if (StartsWith(identifier, "T") || StartsWith(identifier, "PT"))
        return NoWeight(Meaning::NotUnderstood, "the line shows a tare: " + Trimmed(line));
    if (IsName(identifier, data)) return {};
    return ReadData(data);
}

}  // namespace

Reading ReadSbi(const std::string& answer) {
    const auto lines = LinesOf(answer);
    if (lines.empty()) return {};
    const std::string& line = lines.front();
    if (line.size() == kShortLine) return ReadData(line);
    if (line.size() != kLongLine) return {};
    if (!HasIdentifier(line, "TP1")) return ReadIdentified(line);
    if (lines.size() < 2 || lines[1].size() != kLongLine || !HasIdentifier(lines[1], "N1"))
        return ReadIdentified(line);
    return ReadData(Field(lines[1], kIdentifier));
}

}  // namespace tool
