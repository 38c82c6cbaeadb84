#include "simulator/Text.h"

#include <charconv>
#include <sstream>

namespace simulator {
namespace {

constexpr char kDigits[] = "0123456789";

template <typename Number, typename... Format>
std::optional<Number> Whole(const std::string& text, Format... format) {
    Number number = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number, format...);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return number;
}

}  // namespace

std::optional<double> ParseNumber(const std::string& text) {
    const bool signed_ = !text.empty() && (text[0] == '+' || text[0] == '-');
    const std::string magnitude = text.substr(signed_ ? 1 : 0);
    if (magnitude.find_first_of(kDigits) != 0) return std::nullopt;
    const auto number = Whole<double>(magnitude, std::chars_format::fixed);
    if (!number) return std::nullopt;
    return text[0] == '-' ? -*number : *number;
}

std::optional<int> ParseWholeNumber(const std::string& text, int least, int most) {
    if (text.find_first_not_of(kDigits) != std::string::npos) return std::nullopt;
    const auto number = Whole<int>(text);
    if (!number || *number < least || *number > most) return std::nullopt;
    return number;
}

std::pair<std::string, std::optional<std::string>> CutAt(const std::string& text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string::npos) return {text, std::nullopt};
    return {text.substr(0, at), text.substr(at + 1)};
}

std::pair<std::string, std::string> FirstWord(const std::string& text) {
    const auto [word, rest] = CutAt(text, ' ');
    return {word, rest.value_or("")};
}

std::string SingleSpaced(const std::string& text) {
    std::istringstream words(text);
    std::string spaced;
    for (std::string word; words >> word;)
        spaced += (spaced.empty() ? "" : " ") + word;
    return spaced;
}

}  // namespace simulator
