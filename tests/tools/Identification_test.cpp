// What an instrument says of itself, in doctor and detect.

#include <gmock/gmock.h>

#include <algorithm>

#include "RunProgram.h"

using testing::HasSubstr;
using testing::Not;

namespace {

/// An instrument, the driver with its options, and what doctor tells between answer and diagnosis.
struct Case {
    const char* name;
    const char* instrument;
    const char* driver;
    const char* told;
};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

/// The lines behind the answer, without the diagnosis.
std::string BehindTheAnswer(const std::string& output) {
    const std::size_t answer = output.find("\nanswer ");
    const std::size_t begin = output.find('\n', answer + 1) + 1;
    return output.substr(begin, output.find("diagnosis ", begin) - begin);
}

class DoctorIdentifies : public testing::TestWithParam<Case> {};

TEST_P(DoctorIdentifies, And_tells_model_serial_number_and_software) {
    const Ran ran =
        WbalanceWith(GetParam().instrument, std::string("doctor -d ") + GetParam().driver);
    EXPECT_EQ(BehindTheAnswer(ran.output), GetParam().told) << ran.output;
    EXPECT_EQ(ran.errors, "");
}

const Case kCases[] = {
    {"an_XS204", "mettler-xs --load 3", "mettler-xs",
     "model          XS204 Excellence\n"
     "serial number  1126493049\n"
     "software       4.10\n"
     "weight         3.0000 g, stable\n"},
    {"a_PM_with_the_MT_SICS_option", "mettler-pm --load 3 --with protocol=mt-sics", "mettler-pm",
     "model          MT-SICS\n"
     "serial number  1126493049\n"
     "software       1.20\n"
     "weight         3.00 g, stable\n"},
    {"a_PM_that_answers_ES", "mettler-pm --load 3", "mettler-pm",
     "weight         3.00 g, stable\n"},
    {"an_LA620S", "sartorius --load 3", "sartorius",
     "model          LA620S\n"
     "serial number  37454321\n"
     "software       00-37-09\n"
     "weight         3.00 g, stable\n"},
    {"an_Entris_that_says_Model_in_front",
     "sartorius --load 3 --with series=entris2 --with line=22", "sartorius",
     "model          BCE124I-1CEU\n"
     "serial number  37454321\n"
     "software       00-37-09\n"
     "weight         3.00 g, stable\n"},
    {"a_CP622S_that_is_silent_about_its_software", "sartorius --load 3 --with series=cp",
     "sartorius",
     "model          CP622S\n"
     "serial number  37454321\n"
     "weight         3.00 g, stable\n"},
    {"an_Explorer", "ohaus --load 3 --with series=explorer", "ohaus",
     "serial number  B717693125\n"
     "software       1.10\n"
     "weight         3.00 g, stable\n"},
    {"a_Scout_Pro_that_knows_V_alone", "ohaus --load 3", "ohaus",
     "software       1.10\n"
     "weight         3.00 g, stable\n"},
    {"a_PS", "radwag --load 3", "radwag",
     "model          PS\n"
     "serial number  123456\n"
     "software       r.3.0.9\n"
     "weight         3.00 g, stable\n"},
    {"a_terminal_that_knows_NB_alone", "radwag --load 3 --with series=wtc", "radwag",
     "serial number  123456\n"
     "weight         3.00 g, stable\n"},
    {"a_balance_whose_pan_never_rests", "sartorius --load 3 --fault busy", "sartorius",
     "model          LA620S\n"
     "serial number  37454321\n"
     "software       00-37-09\n"},
    {"one_on_a_slow_line", "mettler-xs --load 3 --line 300,7E1 --pace=ftdi:255",
     "mettler-xs -l 300,7E1",
     "model          XS204 Excellence\n"
     "serial number  1126493049\n"
     "software       4.10\n"
     "weight         3.0000 g, stable\n"},
    {"nothing_of_one_that_has_no_question", "kern --load 3", "kern",
     "weight         3.00 G, stable\n"},
};

INSTANTIATE_TEST_SUITE_P(Of, DoctorIdentifies, testing::ValuesIn(kCases), NameOf);

TEST(DoctorIdentifiesAlso, In_one_JSON_object_whose_members_are_always_there) {
    const Ran ran =
        WbalanceWith("sartorius --load 3 --with series=cp", "doctor -d sartorius --json");
    EXPECT_THAT(ran.output, HasSubstr("\"model\":\"CP622S\""));
    EXPECT_THAT(ran.output, HasSubstr("\"serialNumber\":\"37454321\""));
    EXPECT_THAT(ran.output, HasSubstr("\"softwareVersion\":\"\""));
    EXPECT_THAT(ran.output, HasSubstr("\"controlLines\":\"CTS on, DSR on, DCD on\""));
    EXPECT_THAT(ran.output, HasSubstr("\"weight\":\"3.00 g, stable\""));
    EXPECT_THAT(ran.output, HasSubstr("\"exitCode\":0"));
    EXPECT_EQ(std::count(ran.output.begin(), ran.output.end(), '\n'), 1);
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(DoctorIdentifiesAlso, Nothing_where_no_port_is_and_says_so_in_JSON) {
    const Ran ran = Wbalance("doctor -d sartorius -p 4711 --usb --json");
    EXPECT_THAT(ran.output, HasSubstr("\"diagnosis\":\"/dev/ttyUSB4711: there is no such port; "));
    EXPECT_THAT(ran.output, HasSubstr("\"exitCode\":3"));
    EXPECT_THAT(ran.output, HasSubstr("\"model\":\"\""));
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorIdentifiesAlso, Nothing_that_answers_what_the_driver_does_not_know) {
    const TemporaryFile log;
    WbalanceWith("radwag --load 3 --log " + log.Path(), "doctor -d kern -l 9600,7E1 -t 0");
    EXPECT_THAT(log.Text(), Not(HasSubstr("\"NB")));
}

TEST(DetectIdentifies, The_instrument_that_it_has_found) {
    const Ran text = WbalanceWith("radwag --load 3", "detect");
    EXPECT_THAT(text.output, HasSubstr("\n  model PS, serial number 123456, software r.3.0.9\n"));
    const Ran json = WbalanceWith("mettler-xs --load 3", "detect --json");
    EXPECT_THAT(json.output, HasSubstr("\"model\":\"XS204 Excellence\""));
    EXPECT_THAT(json.output, HasSubstr("\"serialNumber\":\"1126493049\""));
    EXPECT_THAT(json.output, HasSubstr("\"softwareVersion\":\"4.10\""));
}

}  // namespace
