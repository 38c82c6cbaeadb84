#include "output/MeasurementFormat.h"

#include <gmock/gmock.h>

#include "output/Csv.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using tool::CsvField;
using tool::Format;
using tool::LabelledMeasurement;
using tool::Meaning;
using tool::Stability;

namespace {

LabelledMeasurement Measured(const tool::Reading& reading, const std::string& answer) {
    return {"example", "/dev/ttyS0", "", "", {reading, answer, tool::WallTime{}}};
}

/// A unit that an instrument does not have.
LabelledMeasurement InUnit(const std::string& unit) {
    return Measured({Meaning::OtherUnit, Stability::Stable, "12.5", unit, ""}, unit);
}

TEST(MeasurementFormat, Json_escapes_what_a_terminal_would_carry_out_and_keeps_every_byte) {
    const std::string line = Formatted(InUnit("\x1b[2J\x7f\x9b\xff"), Format::Json);
    EXPECT_THAT(line, HasSubstr(R"("unit":"\u001b[2J\u007f\u009b)"
                                "\u00ff\""));
    EXPECT_THAT(line, HasSubstr(R"("answer":"\u001b[2J\u007f\u009b)"
                                "\u00ff\""));
}

TEST(MeasurementFormat, Json_has_what_stands_behind_a_zero_byte) {
    EXPECT_THAT(Formatted(InUnit(std::string("a\0b", 3)), Format::Json),
                HasSubstr(R"("answer":"a\u0000b")"));
}

TEST(MeasurementFormat, Json_of_a_port_whose_name_is_no_UTF_8_tells_its_bytes) {
    LabelledMeasurement measurement = InUnit("g");
    measurement.port = "/dev/\xff\u202e";
    EXPECT_THAT(Formatted(measurement, Format::Json),
                HasSubstr(R"("port":"/dev/\\xff\\xe2\\x80\\xae")"));
}

TEST(MeasurementFormat, Csv_is_UTF_8_without_controls_whatever_the_unit_is) {
    EXPECT_THAT(Formatted(InUnit("\x1b\a\x9b\xb5"), Format::Csv),
                EndsWith(R"(,other-unit,,"\x1b\x07\x9b\xb5",stable,"\x1b\x07\x9b\xb5")"));
    EXPECT_THAT(Formatted(InUnit("µg"), Format::Csv), HasSubstr(",\"µg\",stable,"));
}

TEST(MeasurementFormat, A_text_has_the_unit_without_its_controls) {
    const auto measured =
        Measured({Meaning::Weight, Stability::Stable, "12.5", "g\x1b[2J", ""}, "12.5");
    EXPECT_EQ(Formatted(measured, Format::Text), "12.5 g\\x1b[2J");
}

TEST(MeasurementFormat, A_notice_is_one_line) {
    LabelledMeasurement notice = InUnit("");
    notice.notice = "lost";
    notice.message = "held by a\nb\x1b";
    EXPECT_EQ(Formatted(notice, Format::Text), "lost: held by a\\nb\\x1b");
    EXPECT_THAT(Formatted(notice, Format::Json), HasSubstr(R"("message":"held by a\\nb\\x1b")"));
    EXPECT_THAT(Formatted(notice, Format::Csv), Not(HasSubstr("\n")));
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
