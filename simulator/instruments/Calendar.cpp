#include "simulator/instruments/Calendar.h"

namespace simulator {
namespace {

std::string Written(const char* format, const std::tm& moment) {
    char text[32];
    return {text, std::strftime(text, sizeof text, format, &moment)};
}

std::time_t Seconds(Time now) {
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

}  // namespace

std::tm Calendar::At(Time now) const {
    const std::time_t moment = begin_ + Seconds(now);
    std::tm fields{};
    gmtime_r(&moment, &fields);
    return fields;
}

std::string Calendar::Text(const char* format, Time now) const {
    return Written(format, At(now));
}

bool Calendar::Set(const char* format, const std::string& text, Time now) {
    std::tm fields = At(now);
    if (!strptime(text.c_str(), format, &fields)) return false;
    const std::time_t moment = timegm(&fields);  // makes 1 March of 29 February 2026
    if (Written(format, fields) != text) return false;
    begin_ = moment - Seconds(now);
    return true;
}

}  // namespace simulator
