// What an instrument says of itself, in doctor and detect.

#include <gmock/gmock.h>

#include <algorithm>

#include "Examples.h"
#include "Facts.h"
#include "JsonOf.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kOtherBalance;
using examples::kOtherBalanceLine;
using examples::kThirdBalance;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// An instrument, the command's arguments, and what doctor tells between answer and diagnosis.
struct Case {
    std::string name;
    std::string instrument;
    std::string doctor;
    std::string told;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const auto& one : facts::All()) {
        for (const auto& row : one.identified) {
            cases.push_back({facts::TestNameOf(one.name) + "_" + row.name,
                             one.name + " " + row.simulated,
                             "doctor -d " + one.name + " " + row.arguments, row.told});
        }
    }
    return cases;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

/// The lines behind the answer, without the diagnosis.
std::string BehindTheAnswer(const std::string& output) {
    const std::size_t answer = output.find("\nanswer ");
    const std::size_t begin = output.find('\n', answer + 1) + 1;
    return output.substr(begin, output.find("diagnosis ", begin) - begin);
}

/// What stands in the line that begins with these words; nothing where there is no such line.
std::string ToldOf(const std::string& words, const std::string& told) {
    constexpr std::size_t kColumn = 15;
    const std::size_t line = told.find(words);
    if (line == std::string::npos) return "";
    return told.substr(line + kColumn, told.find('\n', line) - line - kColumn);
}

class DoctorIdentifies : public testing::TestWithParam<Case> {};

TEST_P(DoctorIdentifies, And_tells_model_serial_number_and_software) {
    const Ran ran = WbalanceWith(GetParam().instrument, GetParam().doctor);
    EXPECT_EQ(BehindTheAnswer(ran.output), GetParam().told) << ran.output;
    EXPECT_EQ(ran.errors, "");
}

TEST_P(DoctorIdentifies, In_one_JSON_object_whose_members_are_always_there) {
    const std::string& told = GetParam().told;
    const Ran ran = WbalanceWith(GetParam().instrument, GetParam().doctor + " --json");
    const QJsonObject object = JsonOf(ran.output);
    for (const char* member :
         {"model", "serialNumber", "softwareVersion", "controlLines", "weight", "exitCode"})
        EXPECT_TRUE(object.contains(member)) << member;
    EXPECT_EQ(TextIn(ran.output, "model"), ToldOf("model ", told));
    EXPECT_EQ(TextIn(ran.output, "serialNumber"), ToldOf("serial number ", told));
    EXPECT_EQ(TextIn(ran.output, "softwareVersion"), ToldOf("software ", told));
    EXPECT_EQ(TextIn(ran.output, "weight"), ToldOf("weight ", told));
    EXPECT_EQ(TextIn(ran.output, "controlLines"), "CTS on, DSR on, DCD on");
    EXPECT_EQ(object["exitCode"].toInt(-1), ran.exitCode);
    EXPECT_EQ(ran.exitCode == 0, !ToldOf("weight ", told).empty());
    EXPECT_EQ(std::count(ran.output.begin(), ran.output.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(Of, DoctorIdentifies, testing::ValuesIn(Cases()), NameOf);

TEST(DoctorIdentifiesAlso, Nothing_where_no_port_is_and_says_so_in_JSON) {
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p 4711 --usb --json");
    EXPECT_THAT(TextIn(ran.output, "diagnosis"),
                StartsWith("/dev/ttyUSB4711: there is no such port; "));
    EXPECT_EQ(JsonOf(ran.output)["exitCode"].toInt(), 3);
    EXPECT_TRUE(JsonOf(ran.output)["model"].isString());
    EXPECT_EQ(TextIn(ran.output, "model"), "");
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(DoctorIdentifiesAlso, Nothing_that_answers_what_the_driver_does_not_know) {
    const TemporaryFile log;
    WbalanceWith(kOtherBalance + " --load 3 --log " + log.Path(),
                 "doctor -d " + kThirdBalance + " -l " + kOtherBalanceLine + " -t 0");
    EXPECT_NE(log.Text(), "");
    EXPECT_THAT(log.Text(), Not(HasSubstr("\"NB")));
}

TEST(DetectIdentifies, The_instrument_that_it_has_found) {
    for (const auto& one : facts::All()) {
        if (one.detected.empty()) continue;
        const Ran text = WbalanceWith(one.name + " --load 3", "detect");
        EXPECT_THAT(text.output, HasSubstr("\n  " + one.detected + "\n"));
        const std::string& told = one.identified.at(0).told;
        const Ran json = WbalanceWith(one.name + " --load 3", "detect --json");
        EXPECT_EQ(TextIn(json.output, "model"), ToldOf("model ", told));
        EXPECT_EQ(TextIn(json.output, "serialNumber"), ToldOf("serial number ", told));
        EXPECT_EQ(TextIn(json.output, "softwareVersion"), ToldOf("software ", told));
    }
}

}  // namespace
