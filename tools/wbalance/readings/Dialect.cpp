#include "Dialect.h"

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
    return reading;
}

}  // namespace tool
