#include "simulator/instruments/Calendar.h"

namespace simulator {
namespace {

std::string written(const char* format, const std::tm& moment) {
    char text[32];
    return {text, std::strftime(text, sizeof text, format, &moment)};
}

std::time_t seconds(Time now) {
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

}  // namespace

std::tm Calendar::at(Time now) const {
    const std::time_t moment = begin_ + seconds(now);
    std::tm fields{};
    gmtime_r(&moment, &fields);
    return fields;
}

std::string Calendar::text(const char* format, Time now) const {
    return written(format, at(now));
}

bool Calendar::set(const char* format, const std::string& text, Time now) {
    std::tm fields = at(now);
    if (!strptime(text.c_str(), format, &fields)) return false;
    const std::time_t moment = timegm(&fields);  // makes 1 March of 29 February 2026
    if (written(format, fields) != text) return false;
    begin_ = moment - seconds(now);
    return true;
}

}  // namespace simulator
