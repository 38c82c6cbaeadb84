// Denver Instrument XL-1800 and Setra EL-2000S: a stability mark, a sign, the number, a unit.
//
//   < "1+   12.34 g\r\n"   stable       < "U-    0.50 g\r\n"   not stable
//   < "?1+   12.34\r\n"    the request's echo with a sign behind it is no mark
//   < "HHH"  "LLL"         overload, pan off

#include "SignedReading.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

constexpr char kDigits[] = "0123456789";
constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool IsOneOf(char character, const std::string& characters) {
    return characters.find(character) != std::string::npos;
}

// A mark with its sign behind it and no digit, letter or question mark in front of it.
bool IsMark(const std::string& answer, std::size_t at) {
    const char before = at == 0 ? ' ' : answer[at - 1];
    return at + 1 < answer.size() && IsOneOf(answer[at], "1U") && IsOneOf(answer[at + 1], "+-") &&
           !IsOneOf(before, kDigits) && !IsOneOf(before, kLetters) && before != '?';
}

// The characters from `position` on that are of a kind.
std::string Run(const std::string& text, std::size_t position, const char* kind) {
    const std::size_t end = text.find_first_not_of(kind, position);
    return Field(text, position, end - position);
}

// The number that begins at `position`; empty when there is none.
std::string NumberAt(const std::string& text, std::size_t position) {
    const std::string whole = Run(text, position, kDigits);
    const std::size_t point = position + whole.size();
    if (Field(text, point, 1) != ".") return whole;
    const std::string number = whole + "." + Run(text, point + 1, kDigits);
    return IsNumber(number) ? number : "";
}

Reading ReadBehindMark(const std::string& answer, std::size_t mark) {
    const std::size_t start = answer.find_first_not_of(' ', mark + 2);
    const std::string number = NumberAt(answer, start);
    if (number.empty()) return {};
    const std::string unit =
        Run(answer, answer.find_first_not_of(' ', start + number.size()), kLetters);
    const bool grams = unit.empty() || unit == "g" || unit == "G";
    return WeightIn(unit, grams ? unit : "g", (answer[mark + 1] == '-' ? "-" : "") + number,
                    answer[mark] == '1' ? Stability::Stable : Stability::Dynamic);
}

}  // namespace

Reading ReadSignedReading(const std::string& answer) {
    if (answer.find("HHH") != std::string::npos) return NoWeight(Meaning::Overload);
    if (answer.find("LLL") != std::string::npos) return NoWeight(Meaning::Underload);
    if (!LooksLikeText(answer)) return {};
    for (std::size_t at = 0; at < answer.size(); ++at) {
        if (!IsMark(answer, at)) continue;
        const Reading reading = ReadBehindMark(answer, at);
        if (!reading.digits.empty()) return TruncatedIfCut(reading, answer);
    }
    return {};
}

}  // namespace tool
