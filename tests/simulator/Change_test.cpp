// The words in which scripts and `wbalance-sim control` say what happens to an instrument.

#include "simulator/Change.h"

#include <gmock/gmock.h>

#include <stdexcept>

using simulator::Change;
using simulator::Key;
using testing::HasSubstr;
using namespace std::chrono_literals;

namespace {

std::string ReasonFor(const std::string& text) {
    try {
        Change::Parse(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(Change, A_load_is_in_grams_and_may_be_below_zero) {
    const Change change = Change::Parse("load -12.34");
    EXPECT_EQ(change.kind, Change::Kind::Load);
    EXPECT_EQ(change.grams, -12.34);
}

TEST(Change, Noise_and_drift_are_switches_with_words_of_their_own) {
    EXPECT_EQ(Change::Parse("noise 0.02").kind, Change::Kind::Setting);
    EXPECT_EQ(Change::Parse("noise 0.02").text, "noise=0.02");
    EXPECT_EQ(Change::Parse("drift 5").text, "drift=5");
    EXPECT_EQ(Change::Parse("switch reset-answer=off").text, "reset-answer=off");
}

TEST(Change, A_fault_has_its_value_and_its_duration) {
    const Change change = Change::Parse("fault late=2s for 10s");
    EXPECT_EQ(change.kind, Change::Kind::Fault);
    EXPECT_EQ(change.fault.name, "late");
    EXPECT_EQ(change.fault.value, "2s");
    EXPECT_EQ(change.fault.from, 0s);
    EXPECT_EQ(change.fault.until, 10s);
}

TEST(Change, Unplug_says_for_how_long_and_as_what_it_comes_back) {
    const Change change = Change::Parse("unplug  for 2s\tas ttyUSB1");
    EXPECT_EQ(change.kind, Change::Kind::Fault);
    EXPECT_EQ(change.fault.name, "unplug");
    EXPECT_EQ(change.fault.value, "/dev/ttyUSB1");
    EXPECT_EQ(change.fault.until, 2s);
    EXPECT_FALSE(Change::Parse("unplug").fault.until);
}

TEST(Change, Plug_in_may_give_another_name) {
    EXPECT_EQ(Change::Parse("plug-in").kind, Change::Kind::PlugIn);
    EXPECT_EQ(Change::Parse("plug-in").text, "");
    EXPECT_EQ(Change::Parse("plug-in as /dev/ttyUSB3").text, "/dev/ttyUSB3");
}

TEST(Change, End_ends_one_kind_of_fault_or_all) {
    EXPECT_EQ(Change::Parse("end").kind, Change::Kind::EndFaults);
    EXPECT_EQ(Change::Parse("end").text, "");
    EXPECT_EQ(Change::Parse("end silent").text, "silent");
}

TEST(Change, Keys_are_print_tare_and_zero) {
    EXPECT_EQ(Change::Parse("press print").key, Key::Print);
    EXPECT_EQ(Change::Parse("press tare").key, Key::Tare);
    EXPECT_EQ(Change::Parse("press zero").key, Key::Zero);
    EXPECT_EQ(Change::Parse("press zero").kind, Change::Kind::Press);
}

TEST(Change, What_is_not_understood_is_answered_with_what_would_be) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "\"\" is nothing that can be done; there are drift, end, fault, load, "},
        {"laod 5", "\"laod\" is nothing that can be done; there are drift, end, fault, load, "},
        {"load", "\"load\": it is written load GRAMS, such as load 12.34"},
        {"load heavy", "\"load heavy\": it is written load GRAMS, such as load 12.34"},
        {"load 5 6", "it is written load GRAMS"},
        {"noise", "it is written noise NUMBER, such as noise 0.02"},
        {"drift much", "it is written drift NUMBER"},
        {"switch", "it is written switch NAME=VALUE, such as switch unit=kg"},
        {"switch unit kg", "it is written switch NAME=VALUE"},
        {"fault", "there is no such fault; there are busy"},
        {"fault slow", "there is no such fault; there are busy"},
        {"fault silent for long", "\"long\" is no time such as 500ms or 2s"},
        {"fault silent during 2s", "\"during\" is not understood"},
        {"fault silent as ttyUSB1", "\"as\" is not understood"},
        {"end slow", "there is no such fault"},
        {"unplug as ttyACM0", "the value is a device such as ttyUSB1"},
        {"unplug for", "\"\" is no time such as 500ms or 2s"},
        {"plug-in ttyUSB1", "it is written plug-in [as DEVICE], such as plug-in as ttyUSB1"},
        {"plug-in as printer", "it is written plug-in [as DEVICE]"},
        {"press", "it is written press print, press tare or press zero"},
        {"press enter", "it is written press print, press tare or press zero"},
    };
    for (const auto& [text, reason] : cases)
        EXPECT_THAT(ReasonFor(text), HasSubstr(reason)) << text;
}
