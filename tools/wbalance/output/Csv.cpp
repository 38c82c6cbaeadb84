#include "Csv.h"

#include "OutsideText.h"
#include "readings/Fields.h"

namespace tool {
namespace {

// A tab and a carriage return in front, which some spreadsheets skip, can't be shown either.
bool LooksLikeAFormula(const std::string& text) {
    return !text.empty() && std::string("=+-@").find(text[0]) != std::string::npos &&
           !IsNumber(text);
}

}  // namespace

std::string CsvField(const std::string& text) {
    const std::string shown = outside::Printable(text);
    std::string field = LooksLikeAFormula(shown) ? "\"'" : "\"";
    for (const char character : shown) {
        if (character == '"') field += '"';
        field += character;
    }
    return field + "\"";
}

}  // namespace tool
