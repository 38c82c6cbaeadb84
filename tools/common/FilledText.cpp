#include "FilledText.h"

namespace texts {

std::string Filled(const std::string& text, const FillIns& fillIns) {
    std::string filled;
    std::size_t end = 0;
    for (;;) {
        const std::size_t open = text.find('{', end);
        if (open == std::string::npos) return filled + text.substr(end);
        const std::size_t close = text.find('}', open);
        filled += text.substr(end, open - end);
        filled += fillIns.at(text.substr(open + 1, close - open - 1));
        end = close + 1;
    }
}

}  // namespace texts
