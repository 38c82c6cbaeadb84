#include "simulator/Script.h"

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

using simulator::Change;
using simulator::ReadScript;
using simulator::Script;
using testing::HasSubstr;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

Script Read(const std::string& text) {
    std::istringstream stream(text);
    return ReadScript(stream, "bench.script");
}

std::string ReasonFor(const std::string& text) {
    try {
        Read(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(Script, A_line_has_a_time_and_what_happens) {
    const Script script = Read("2s load 100\n500ms\tfault  silent for 2s\n");
    ASSERT_EQ(script.size(), 2u);
    EXPECT_EQ(script[0].at, 500ms);
    EXPECT_EQ(script[0].change.kind, Change::Kind::Fault);
    EXPECT_EQ(script[0].place, "bench.script:2");
    EXPECT_EQ(script[1].at, 2s);
    EXPECT_EQ(script[1].change.grams, 100);
}

TEST(Script, A_time_with_a_plus_sign_counts_from_the_line_before) {
    const Script script = Read("2s load 1\n+500ms load 2\n\n+1s load 3\n");
    ASSERT_EQ(script.size(), 3u);
    EXPECT_EQ(script[1].at, 2500ms);
    EXPECT_EQ(script[2].at, 3500ms);
}

TEST(Script, Comments_empty_lines_and_line_ends_of_other_systems_are_skipped) {
    const Script script = Read("# a parcel\r\n\r\n0s load 5 # grams\r\n   \n");
    ASSERT_EQ(script.size(), 1u);
    EXPECT_EQ(script[0].change.grams, 5);
    EXPECT_EQ(script[0].place, "bench.script:3");
}

TEST(Script, Lines_of_the_same_time_keep_their_order) {
    const Script script = Read("1s load 1\n1s load 2\n");
    EXPECT_EQ(script[0].change.grams, 1);
    EXPECT_EQ(script[1].change.grams, 2);
}

TEST(Script, A_wrong_line_is_named_with_its_number_and_what_to_write) {
    EXPECT_THAT(ReasonFor("0s load 1\n\nload 2\n"),
                StartsWith("bench.script:3: \"load\" is no time; a line begins with a time such as "
                           "500ms, 2s or, from the line before, +2s"));
    EXPECT_THAT(ReasonFor("5 load 2\n"), StartsWith("bench.script:1: \"5\" is no time"));
    EXPECT_THAT(ReasonFor("+ load 2\n"), StartsWith("bench.script:1: \"+\" is no time"));
    EXPECT_THAT(ReasonFor("5s laod 2\n"), StartsWith("bench.script:1: \"laod\" is nothing"));
    EXPECT_THAT(ReasonFor("5s\n"), StartsWith("bench.script:1: \"\" is nothing"));
}

TEST(Script, A_file_that_is_missing_or_no_file_is_named) {
    try {
        simulator::ReadScriptFile("/no/such/bench.script");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the script /no/such/bench.script: No such file or directory");
    }
    EXPECT_THROW(simulator::ReadScriptFile("/tmp"), std::runtime_error);
}
