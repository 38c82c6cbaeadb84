#include "OutsideText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "Record.h"

namespace outside {
namespace {

constexpr std::size_t kQuoted = 200;

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr Range kUnprintable[] = {
    {0x0, 0x1f},            // controls
    {0x7f, 0x9f},           // delete, and the controls of the upper half
    {0xad, 0xad},           // soft hyphen
    {0x61c, 0x61c},         // a mark of direction
    {0x200b, 0x200f},       // zero width, marks of direction
    {0x2028, 0x202e},       // separators of lines and paragraphs, overrides of direction
    {0x2060, 0x206f},       // invisible operators, isolates of direction
    {0xd800, 0xdfff},       // halves of pairs, which no UTF-8 has
    {0xfdd0, 0xfdef},       // no characters
    {0xfeff, 0xfeff},       // byte order mark
    {0xfff0, 0xfffb},       // marks of annotations
    {0xfffe, 0xffff},       // no characters
    {0xe0000, 0xe0fff},     // tags
    {0x110000, 0xffffffff}  // beyond Unicode
};

/// A character and the bytes that it takes; 0 where the text is no UTF-8.
struct Decoded {
    std::uint32_t character = 0;
    std::size_t length = 0;
};

std::size_t LengthBehind(unsigned char first) {
    if (first < 0x80) return 1;
    if (first < 0xc2) return 0;
    if (first < 0xe0) return 2;
    if (first < 0xf0) return 3;
    return first < 0xf5 ? 4 : 0;
}

Decoded Decode(const std::string& text, std::size_t at) {
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text[at]);
    const std::size_t length = LengthBehind(first);
    if (length < 2) return {first, length};
    if (at + length > text.size()) return {};
    std::uint32_t character = first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + i]);
        if ((byte & 0xc0U) != 0x80) return {};
        character = character << 6U | (byte & 0x3fU);
    }
    return character < kLeast[length] ? Decoded{} : Decoded{character, length};
}

bool IsLineEnd(const std::string& text, std::size_t at) {
    return text[at] == '\n' || text.compare(at, 2, "\r\n") == 0;
}

std::string Shown(const std::string& text, bool keepLineEnds) {
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const Decoded decoded = Decode(text, at);
        const std::size_t length = std::max<std::size_t>(decoded.length, 1);
        const std::string bytes = text.substr(at, length);
        const bool printable = decoded.length != 0 && IsPrintable(decoded.character);
        const bool kept = printable || (keepLineEnds && IsLineEnd(text, at));
        shown += kept ? bytes : record::Escaped(bytes);
        at += length;
    }
    return shown;
}

}  // namespace

bool IsPrintable(std::uint32_t character) {
    return std::none_of(std::begin(kUnprintable), std::end(kUnprintable),
                        [character](const Range& range) {
                            return character >= range.first && character <= range.last;
                        });
}

std::string Printable(const std::string& text) {
    return Shown(text, false);
}

std::string PrintableLines(const std::string& text) {
    return Shown(text, true);
}

std::string Shortened(const std::string& text) {
    return text.size() <= kQuoted ? text : text.substr(0, kQuoted) + " ...";
}

std::string Quoted(const std::string& bytes) {
    const std::string quotation = "\"" + record::Escaped(bytes.substr(0, kQuoted)) + "\"";
    if (bytes.size() <= kQuoted) return quotation;
    return quotation + " and " + std::to_string(bytes.size() - kQuoted) + " more bytes";
}

}  // namespace outside
