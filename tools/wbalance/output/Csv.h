#pragma once

#include <string>

namespace tool {

/// Text as a field of comma-separated values: UTF-8, in quotation marks, those within it doubled.
///
/// What can't be shown is in it as Printable() writes it. A field that a spreadsheet would take for
/// a formula, because it begins with = + - or @ and is no number, has an apostrophe in front.
std::string CsvField(const std::string& text);

}  // namespace tool
