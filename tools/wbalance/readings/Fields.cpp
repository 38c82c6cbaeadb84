#include "Fields.h"

#include <algorithm>

namespace tool {
namespace {

constexpr char kBlanks[] = " \t";

}  // namespace

std::vector<std::string> LinesOf(const std::string& answer) {
    std::vector<std::string> lines;
    std::string line;
    for (const char character : answer + "\n") {
        if (character != '\n') {
            line += character;
            continue;
        }
        while (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
        line.clear();
    }
    while (!lines.empty() && lines.back().empty())
        lines.pop_back();
    return lines;
}

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string> WordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::size_t end = 0;
    for (;;) {
        const std::size_t begin = text.find_first_not_of(kBlanks, end);
        if (begin == std::string::npos) return words;
        end = text.find_first_of(kBlanks, begin);
        words.push_back(text.substr(begin, end - begin));
        if (end == std::string::npos) return words;
    }
}

bool IsNumber(const std::string& text) {
    const std::size_t start = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    if (text.find_first_not_of("0123456789.", start) != std::string::npos) return false;
    return text.find_first_of("0123456789", start) != std::string::npos &&
           std::count(text.begin(), text.end(), '.') <= 1;
}

std::string Field(const std::string& text, std::size_t position, std::size_t length) {
    return position < text.size() ? text.substr(position, length) : "";
}

bool LooksLikeText(const std::string& bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char character) {
        return (character >= ' ' && character <= '~') || character == '\r' || character == '\n' ||
               character == '\x1b';
    });
}

}  // namespace tool
