#pragma once

#include <string>

#include "readings/Measurement.h"

namespace tool {

enum class Format { Text, Json, Csv };

/// A measurement with the balance that it comes from, or a notice about that balance.
struct LabelledMeasurement {
    std::string driver;
    std::string port;
    std::string notice;   ///< "lost" or "back" instead of a measurement; else empty
    std::string message;  ///< of a notice
    Measurement measurement;
};

/// One line for the format, without its line end.
///
/// - Text: "100.00 g", with "  dynamic" behind it while the pan moves; for what is no weight the
///   sentence for people.
/// - Json: one object with the members time, driver, port, status, value, digits, unit, stability,
///   answer and message. `value` is a number in grams, and null unless `status` is "weight";
///   `status` is a word of WordFor(Meaning), or the notice. `digits`, `unit` and `answer` have one
///   character for each byte (U+0000 to U+00FF). What can't be shown is escaped, so that the line
///   is UTF-8 without controls whatever an instrument sends.
/// - Csv: the columns of CsvHeader(), texts as CsvField() writes them, bytes of the answer as in a
///   record.
std::string Formatted(const LabelledMeasurement& measurement, Format format);

std::string CsvHeader();

/// "2026-11-21T02:54:17.123+01:00", local time.
std::string TimeText(WallTime time);

}  // namespace tool
