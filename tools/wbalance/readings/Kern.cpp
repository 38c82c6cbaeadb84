// Kern records of 12 characters, behind the acknowledgement: sign 0, value 1-7, unit 8-9,
// tolerance 10, status 11. In the 7-digit format everything behind the value is one further.
//
//   < "A00\r\n+  12.50 G S\r\n"   S stable, U not stable, E error, blank unknown
//   < "E01\r\n"                   wrong command, or the weight is in error

#include "Kern.h"

#include "Fields.h"
#include "Interpreter.h"

namespace tool {
namespace {

constexpr std::size_t kRecord = 12;
constexpr std::size_t kLongRecord = 13;

Stability StabilityOf(char status) {
    if (status == 'S') return Stability::Stable;
    return status == 'U' ? Stability::Dynamic : Stability::Unknown;
}

Reading ReadRecord(const std::string& record) {
    const std::size_t valueEnd = record.size() - 4;
    const char status = record.back();
    if (status == 'E')
        return NoWeight(Meaning::InstrumentError,
                        "o-Err or u-Err: overload, underload or the like");
    std::string number = Trimmed(record.substr(1, valueEnd - 1));
    if (!IsNumber(number) || std::string("+- ").find(record[0]) == std::string::npos) return {};
    if (std::string("SU ").find(status) == std::string::npos) return {};
    if (record[0] == '-') number.insert(0, "-");
    return WeightIn(Trimmed(record.substr(valueEnd, 2)), "G", number, StabilityOf(status));
}

}  // namespace

Reading ReadKern(const std::string& answer) {
    bool acknowledged = false;
    for (const auto& line : LinesOf(answer)) {
        if (line.empty()) continue;
        if (line.rfind("E0", 0) == 0) return NoWeight(Meaning::InstrumentError, line);
        if (line == "A00") {
            acknowledged = true;
            continue;
        }
        if (line.size() == kRecord || line.size() == kLongRecord) return ReadRecord(line);
        if (std::string("+- ").find(line[0]) == std::string::npos) return {};
        return NoWeight(Meaning::Truncated);
    }
    return acknowledged ? NoWeight(Meaning::NotStable, "acknowledged, but no weight came")
                        : Reading{};
}

}  // namespace tool
