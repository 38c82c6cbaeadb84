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
    std::string text;
    for (const auto& character : characters)
        text += character.bytes;
    return text;
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
    std::size_t width = WidthOf(characters);
    if (width <= columns) return TextOf(characters);
    if (columns == 0) return "";
    for (; width >= columns; characters.pop_back())
        width -= characters.back().width;
    return TextOf(characters) + ">";
}

std::string CutInFront(const std::string& text, std::size_t columns) {
    const Characters characters = CharactersOf(text);
    std::size_t width = WidthOf(characters);
    if (width <= columns) return TextOf(characters);
    if (columns == 0) return "";
    auto first = characters.begin();
    for (; width >= columns; ++first)
        width -= first->width;
    // What combines with a character goes with it.
    while (first != characters.end() && first->width == 0)
        ++first;
    return "<" + TextOf({first, characters.end()});
}

}  // namespace tool
