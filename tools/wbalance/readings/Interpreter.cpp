#include "Interpreter.h"

namespace tool {

Reading NoWeight(Meaning meaning, const std::string& remark) {
    Reading reading;
    reading.meaning = meaning;
    reading.remark = remark;
    return reading;
}

Reading WeightIn(const std::string& unit, const std::string& grams, const std::string& digits,
                 Stability stability) {
    Reading reading;
    reading.meaning = unit == grams ? Meaning::Weight : Meaning::OtherUnit;
    reading.stability = stability;
    reading.digits = digits;
    reading.unit = unit;
    if (unit.empty() && !grams.empty()) reading.remark = "no unit was sent";
    return reading;
}

Reading TruncatedIfCut(const Reading& reading, const std::string& answer) {
    const bool endsInNumber = answer.find_last_of("0123456789.") + 1 == answer.size();
    if (reading.digits.empty() || !endsInNumber) return reading;
    return NoWeight(Meaning::Truncated, "the answer ends in the middle of the number");
}

}  // namespace tool
