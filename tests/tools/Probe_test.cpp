#include "detect/Probe.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "Examples.h"
#include "Facts.h"
#include "detect/Detector.h"

using testing::ElementsAreArray;
using tool::Probes;

namespace {

std::string DriverFor(const std::string& command, const std::string& answer) {
    for (const auto& probe : Probes()) {
        if (probe.command != command) continue;
        const tool::DriverInfo* driver = probe.DriverFor(answer);
        return driver == nullptr ? "" : driver->name;
    }
    return "no such question";
}

void AddOnce(std::vector<std::string>& texts, const std::string& text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
}

std::vector<std::string> TextsOf(const std::vector<tool::LineSettings>& settings) {
    std::vector<std::string> texts;
    for (const auto& line : settings)
        texts.push_back(line.Text());
    return texts;
}

std::vector<std::string> SettingsOfTheInstruments() {
    std::vector<std::string> settings;
    for (const auto& one : facts::All())
        AddOnce(settings, one.line);
    return settings;
}

class ProbeEach : public testing::TestWithParam<facts::Instrument> {};

TEST_P(ProbeEach, Is_found_by_its_answers_or_says_why_it_is_not) {
    const facts::Instrument& one = GetParam();
    EXPECT_FALSE(one.known.empty() && one.modelAnswer.empty() &&
                 tool::FindDriver(one.name).recognition.whyNot.empty())
        << one.name << " needs a question and an answer by which `wbalance detect` finds it";
    for (const auto& known : one.known)
        EXPECT_EQ(DriverFor(known.question, known.answer), one.name) << known.answer;
    for (const auto& strange : one.strange)
        EXPECT_EQ(DriverFor(strange.question, strange.answer), "") << strange.answer;
}

TEST_P(ProbeEach, Knows_no_answer_of_another) {
    const auto& recognition = tool::FindDriver(GetParam().name).recognition;
    for (const auto& other : facts::All()) {
        if (other.name == GetParam().name) continue;
        for (const auto& [question, answer] : other.known) {
            for (const auto& asked : recognition.asked)
                EXPECT_FALSE(asked.question == question && asked.recognises(answer)) << answer;
            for (const auto& overheard : recognition.overheard)
                EXPECT_FALSE(overheard.question == question && overheard.recognises(answer))
                    << answer;
        }
    }
}

TEST_P(ProbeEach, Is_asked_only_its_own_questions) {
    std::vector<std::string> questions;
    for (const auto& asked : tool::FindDriver(GetParam().name).recognition.asked)
        questions.push_back(asked.question);
    EXPECT_THAT(questions, ElementsAreArray(GetParam().questions));
}

TEST_P(ProbeEach, Is_told_by_its_model_where_others_answer_alike) {
    if (GetParam().modelAnswer.empty()) return;
    const auto& found = tool::FindDriver(examples::kBalance);
    EXPECT_EQ(tool::DriverForModel(found, GetParam().modelAnswer).name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Of, ProbeEach, testing::ValuesIn(facts::All()),
                         [](const auto& one) { return facts::TestNameOf(one.param.name); });

// Nothing but these is asked: none of them tares, zeroes, resets or sets anything.
TEST(Probe, The_questions_are_those_of_the_instruments_and_no_others) {
    std::vector<std::string> expected;
    for (const auto& one : facts::All()) {
        for (const auto& question : one.questions)
            AddOnce(expected, question);
    }
    std::vector<std::string> questions;
    for (const auto& probe : Probes())
        questions.push_back(probe.command);
    EXPECT_THAT(questions, testing::UnorderedElementsAreArray(expected));
}

// A Mettler PM takes it for a preset tare, and answers the first question.
TEST(Probe, The_request_SI_comes_first_and_the_question_that_sets_a_preset_tare_comes_last) {
    EXPECT_EQ(Probes().front().command, "SI\r\n");
    EXPECT_EQ(Probes().back().command, "\rB\r");
}

TEST(Probe, An_echo_and_an_error_are_no_instrument) {
    for (const auto& probe : Probes()) {
        EXPECT_EQ(DriverFor(probe.command, probe.command), "") << probe.command;
        EXPECT_EQ(DriverFor(probe.command, "ES\r\n"), "") << probe.command;
    }
}

TEST(Probe, Each_instrument_is_asked_at_its_own_settings_what_it_is_found_by) {
    for (const auto& driver : tool::Drivers()) {
        const auto asks = [&](const tool::Probe& probe) {
            return std::count(probe.drivers.begin(), probe.drivers.end(), &driver) == 1;
        };
        EXPECT_TRUE(!driver.recognition.whyNot.empty() ||
                    std::any_of(Probes().begin(), Probes().end(), asks))
            << driver.name;
    }
}

TEST(Probe, An_answer_that_tells_no_model_leaves_the_driver_for_any) {
    const auto& found = tool::FindDriver(examples::kBalance);
    EXPECT_EQ(tool::DriverForModel(found, "ES\r\n").name, examples::kBalance);
}

// A Gibertini that has heard them, and answers no unknown command, would take "?1#B" for one.
TEST(Probe, The_questions_without_a_line_end_do_not_spoil_the_next_one) {
    bool open = false;
    for (const auto& probe : Probes()) {
        if (open && probe.command.back() == '\r') {
            EXPECT_EQ(probe.command.front(), '\r');
        }
        open = probe.command.back() != '\r' && probe.command.back() != '\n';
    }
}

TEST(Detector, Tries_every_instruments_own_settings_once) {
    EXPECT_THAT(TextsOf(tool::Detector::Settings(false)),
                ElementsAreArray(SettingsOfTheInstruments()));
}

TEST(Detector, Tries_more_settings_when_it_is_to_be_thorough) {
    auto expected = SettingsOfTheInstruments();
    for (const char* usual : {"9600,8N1", "9600,7E1", "2400,7E1", "1200,7E1", "4800,7E1",
                              "4800,8N1", "1200,8N1", "9600,7O1", "2400,7O1", "19200,8N1",
                              "600,7E1", "9600,8E1", "4800,8N2", "19200,7E1", "38400,8N1"})
        AddOnce(expected, usual);
    EXPECT_THAT(TextsOf(tool::Detector::Settings(true)), ElementsAreArray(expected));
}

}  // namespace
