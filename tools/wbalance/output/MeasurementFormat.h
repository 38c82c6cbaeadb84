#pragma once

#include <string>
#include <vector>

#include "readings/Measurement.h"

namespace tool {

/// A measurement with the balance that it comes from, or a notice about that balance.
struct LabelledMeasurement {
    std::string driver;
    std::string port;
    std::string notice;   ///< "lost" or "back" instead of a measurement; else empty
    std::string message;  ///< of a notice
    Measurement measurement;
};

/// A way to print measurements. A further one is one more row of Formats(): the options of the
/// commands, their help, the log and the completion come from there.
///
/// - text: "100.00 g", with "  dynamic" behind it while the pan moves; for what is no weight the
///   sentence for people.
/// - json: one object with the members time, driver, port, status, value, digits, unit, stability,
///   answer and message. `value` is a number in grams, and null unless `status` is "weight";
///   `status` is a word of WordFor(Meaning), or the notice. `digits`, `unit` and `answer` have one
///   character for each byte (U+0000 to U+00FF). What can't be shown is escaped, so that the line
///   is UTF-8 without controls whatever an instrument sends.
/// - csv: the columns of its header, texts as CsvField() writes them, bytes of the answer as in a
///   record.
struct Format {
    std::string name;   ///< of the option that chooses it: "json" for --json
    std::string title;  ///< in a sentence: "JSON"
    std::string help;   ///< of the option; empty for the one that is for people and needs none
    std::string (*line)(const LabelledMeasurement&);  ///< without its line end
    std::string header;        ///< the line in front of all others; empty: there is none
    std::string lineBegins;    ///< with what each line begins, where there is no header
    bool tellsErrors = false;  ///< an error that leaves no measurement is a line, too

    bool IsForPeople() const { return help.empty(); }
};

/// All of them. The first is what is printed when no option chooses one.
const std::vector<Format>& Formats();

/// The one with this name. Throws std::out_of_range where there is none.
const Format& FormatNamed(const std::string& name);

/// The format of a log whose lines are shown in this one: a line of the log is for programs.
const Format& LogFormatFor(const Format& shown);

/// "2026-11-21T02:54:17.123+01:00", local time.
std::string TimeText(WallTime time);

}  // namespace tool
