#include "Columns.h"

#include <locale.h>
#include <wchar.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace tool {
namespace {

struct Character {
    std::string bytes;
    std::size_t width;
};
using Characters = std::vector<Character>;

// Characters are looked up as UTF-8 whatever the user's locale is.
class InUtf8 {
 public:
    InUtf8() : before_(uselocale(Utf8())) {}
    ~InUtf8() { uselocale(before_); }
    InUtf8(const InUtf8&) = delete;
    InUtf8& operator=(const InUtf8&) = delete;

 private:
    // Where the system has none, it is null and changes nothing: each byte is then a column.
    static locale_t Utf8() {
        static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    const locale_t before_;
};

Characters CharactersOf(const std::string& text) {
    const InUtf8 utf8;
    Characters characters;
    for (std::size_t at = 0; at < text.size();) {
        mbstate_t state{};
        wchar_t code = 0;
        const std::size_t length = mbrtowc(&code, text.data() + at, text.size() - at, &state);
        const bool isCharacter = length > 0 && length <= text.size();
        const int width = isCharacter ? wcwidth(code) : -1;
        if (width < 0) {
            characters.push_back({"?", 1});
        } else {
            characters.push_back({text.substr(at, length), static_cast<std::size_t>(width)});
        }
        at += isCharacter ? length : 1;
    }
    return characters;
}

std::size_t WidthOf(const Characters& characters) {
    return std::accumulate(characters.begin(), characters.end(), std::size_t{0},
                           [](std::size_t sum, const Character& one) { return sum + one.width; });
}

std::string TextOf(const Characters& characters) {
    return std::accumulate(characters.begin(), characters.end(), std::string(),
                           [](std::string text, const Character& one) { return text + one.bytes; });
}

}  // namespace

std::size_t WidthOf(const std::string& text) {
    return WidthOf(CharactersOf(text));
}

std::string Padded(const std::string& text, std::size_t columns) {
    const std::size_t width = WidthOf(text);
    return width < columns ? text + std::string(columns - width, ' ') : text;
}

std::string Cut(const std::string& text, std::size_t columns) {
    Characters characters = CharactersOf(text);
    if (WidthOf(characters) <= columns) return TextOf(characters);
    if (columns == 0) return "";
    while (WidthOf(characters) >= columns)
        characters.pop_back();
    return TextOf(characters) + ">";
}

std::string CutInFront(const std::string& text, std::size_t columns) {
    Characters characters = CharactersOf(text);
    if (WidthOf(characters) <= columns) return TextOf(characters);
    if (columns == 0) return "";
    // What combines with a character goes with it.
    while (WidthOf(characters) >= columns || (!characters.empty() && characters.front().width == 0))
        characters.erase(characters.begin());
    return "<" + TextOf(characters);
}

}  // namespace tool
