#include "output/MeasurementFormat.h"

#include <gmock/gmock.h>

#include "output/Csv.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using tool::CsvField;
using tool::LabelledMeasurement;
using tool::Meaning;
using tool::Stability;

namespace {

LabelledMeasurement Measured(const tool::Reading& reading, const std::string& answer) {
    return {"example", "/dev/ttyS0", "", "", {reading, answer, tool::WallTime{}}};
}

std::string Text(const LabelledMeasurement& measurement) {
    return tool::FormatNamed("text").line(measurement);
}

std::string Json(const LabelledMeasurement& measurement) {
    return tool::FormatNamed("json").line(measurement);
}

std::string Csv(const LabelledMeasurement& measurement) {
    return tool::FormatNamed("csv").line(measurement);
}

/// A unit that an instrument does not have.
LabelledMeasurement InUnit(const std::string& unit) {
    return Measured({Meaning::OtherUnit, Stability::Stable, "12.5", unit, ""}, unit);
}

TEST(MeasurementFormat, Json_escapes_what_a_terminal_would_carry_out_and_keeps_every_byte) {
    const std::string line = Json(InUnit("\x1b[2J\x7f\x9b\xff"));
    EXPECT_THAT(line, HasSubstr(R"("unit":"\u001b[2J\u007f\u009b)"
                                "\u00ff\""));
    EXPECT_THAT(line, HasSubstr(R"("answer":"\u001b[2J\u007f\u009b)"
                                "\u00ff\""));
}

TEST(MeasurementFormat, Json_has_what_stands_behind_a_zero_byte) {
    EXPECT_THAT(Json(InUnit(std::string("a\0b", 3))), HasSubstr(R"("answer":"a\u0000b")"));
}

TEST(MeasurementFormat, Json_of_a_port_whose_name_is_no_UTF_8_tells_its_bytes) {
    LabelledMeasurement measurement = InUnit("g");
    measurement.port = "/dev/\xff\u202e";
    EXPECT_THAT(Json(measurement), HasSubstr(R"("port":"/dev/\\xff\\xe2\\x80\\xae")"));
}

TEST(MeasurementFormat, Csv_is_UTF_8_without_controls_whatever_the_unit_is) {
    EXPECT_THAT(Csv(InUnit("\x1b\a\x9b\xb5")),
                EndsWith(R"(,other-unit,,"\x1b\x07\x9b\xb5",stable,"\x1b\x07\x9b\xb5")"));
    EXPECT_THAT(Csv(InUnit("µg")), HasSubstr(",\"µg\",stable,"));
}

TEST(MeasurementFormat, A_text_has_the_unit_without_its_controls) {
    const auto measured =
        Measured({Meaning::Weight, Stability::Stable, "12.5", "g\x1b[2J", ""}, "12.5");
    EXPECT_EQ(Text(measured), "12.5 g\\x1b[2J");
}

TEST(MeasurementFormat, A_notice_is_one_line) {
    LabelledMeasurement notice = InUnit("");
    notice.notice = "lost";
    notice.message = "held by a\nb\x1b";
    EXPECT_EQ(Text(notice), "lost: held by a\\nb\\x1b");
    EXPECT_THAT(Json(notice), HasSubstr(R"("message":"held by a\\nb\\x1b")"));
    EXPECT_THAT(Csv(notice), Not(HasSubstr("\n")));
}

TEST(MeasurementFormat, Every_one_is_found_by_its_name_and_only_the_first_is_for_people) {
    std::vector<std::string> names;
    for (const auto& format : tool::Formats()) {
        names.push_back(format.name);
        EXPECT_EQ(&tool::FormatNamed(format.name), &format);
        EXPECT_EQ(format.IsForPeople(), format.name == "text");
    }
    EXPECT_EQ(names, (std::vector<std::string>{"text", "json", "csv"}));
    EXPECT_THROW(tool::FormatNamed("xml"), std::out_of_range);
}

TEST(MeasurementFormat, A_log_has_the_lines_that_are_shown_or_else_comma_separated_values) {
    EXPECT_EQ(tool::LogFormatFor(tool::FormatNamed("text")).name, "csv");
    EXPECT_EQ(tool::LogFormatFor(tool::FormatNamed("csv")).name, "csv");
    EXPECT_EQ(tool::LogFormatFor(tool::FormatNamed("json")).name, "json");
}

TEST(CsvField, What_a_spreadsheet_would_take_for_a_formula_has_an_apostrophe_in_front) {
    EXPECT_EQ(CsvField("=1+1"), "\"'=1+1\"");
    EXPECT_EQ(CsvField("@SUM(A1)"), "\"'@SUM(A1)\"");
    EXPECT_EQ(CsvField("+   123.56 g"), "\"'+   123.56 g\"");
    EXPECT_EQ(CsvField("-1+2"), "\"'-1+2\"");
    EXPECT_EQ(CsvField("\t=1"), "\"\\x09=1\"");
    EXPECT_EQ(CsvField("\r=1"), "\"\\r=1\"");
}

TEST(CsvField, Numbers_and_other_texts_stay) {
    EXPECT_EQ(CsvField("+12.5"), "\"+12.5\"");
    EXPECT_EQ(CsvField("-0.50"), "\"-0.50\"");
    EXPECT_EQ(CsvField(""), "\"\"");
    EXPECT_EQ(CsvField("a \"b\", c"), "\"a \"\"b\"\", c\"");
}

}  // namespace
