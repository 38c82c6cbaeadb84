#include "Steps.h"

#include "Tables.h"

namespace faults {

double MettlerNumber(const std::string& answer, int* decimals) {
    if (answer.size() >= 100) throw ProcessEnd{"a weight answer"};
    static const std::string digits = "0123456789";
    std::size_t start = answer.find_first_of(digits);
    if (start == std::string::npos) return 0.0;
    if (start > 0 && answer[start - 1] == '-') --start;
    std::size_t end = answer.find_first_not_of(digits + "-.", start);
    if (end == std::string::npos) end = answer.size();
    const std::string number = answer.substr(start, end - start);
    const std::size_t point = number.find('.');
    if (decimals != nullptr && point != std::string::npos)
        *decimals = static_cast<int>(number.size() - point - 1);
    return std::strtod(number.c_str(), nullptr);
}

Description Endless(Description description) {
    description.endless = true;
    return description;
}

Description WithReadinessOfTheLine(Description description) {
    description.endless = false;
    description.operations["IsReady"] = {OpenAndClear(), Return(1)};
    return description;
}

}  // namespace faults
