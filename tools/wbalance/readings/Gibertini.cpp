// Gibertini records of the CRYSTAL protocol, 17 characters: measure 0-9, unit 11-13, F1 15, F2 16.
//
//   < "    123.45 g   DS\r\n"
//   F1: D valid, O over-range, U under-range, T taring, C calibration, Z zero, I initial test
//   F2: S stable, I not stable, E error, others calibration

#include "Gibertini.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

constexpr std::size_t kRecord = 17;

Reading ReadMeasure(const std::string& record, char f2) {
    const std::string number = Trimmed(Field(record, 0, 10));
    if (f2 == 'E') return NoWeight(Meaning::InstrumentError);
    if (f2 != 'S' && f2 != 'I') return NoWeight(Meaning::Calibrating);
    if (!IsNumber(number)) return {};
    return WeightIn(Trimmed(Field(record, 11, 3)), "g", number,
                    f2 == 'S' ? Stability::Stable : Stability::Dynamic);
}

Reading ReadRecord(const std::string& record) {
    switch (record[15]) {
        case 'D':
            return ReadMeasure(record, record[16]);
        case 'O':
            return NoWeight(Meaning::Overload);
        case 'U':
            return NoWeight(Meaning::Underload);
        case 'T':
        case 'C':
        case 'Z':
        case 'I':
            return NoWeight(Meaning::Calibrating);
        default:
            return {};
    }
}

}  // namespace

Reading ReadGibertini(const std::string& answer) {
    const auto lines = LinesOf(answer);
    if (lines.empty()) return {};
    if (lines.front().size() == kRecord) return ReadRecord(lines.front());
    if (IsNumber(Trimmed(lines.front())))
        return NoWeight(Meaning::NotUnderstood, "a bare number: choose the CRYSTAL protocol");
    return {};
}

}  // namespace tool
