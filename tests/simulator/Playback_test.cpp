#include "replay/Playback.h"

#include <gmock/gmock.h>

using record::Entry;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using namespace std::chrono_literals;

namespace {

constexpr auto kHost = Entry::Kind::FromHost;
constexpr auto kBalance = Entry::Kind::FromInstrument;
constexpr auto kResult = Entry::Kind::Result;

/// A host at a playback, and what comes of it.
class PlayedHost {
 public:
    explicit PlayedHost(std::vector<Entry> entries)
        : playback({{}, std::move(entries)}, "a.record",
                   [this](const std::string& sentence) { complaints.push_back(sentence); }) {}

    void Send(const std::string& bytes) {
        for (const char byte : bytes)
            playback.Take(byte, Take());
    }
    Playback::Answer Take() {
        return [this](simulator::Time delay, const std::string& bytes) {
            answers.emplace_back(delay.count(), bytes);
        };
    }

    std::vector<std::pair<long, std::string>> answers;  ///< delays in milliseconds
    std::vector<std::string> complaints;
    Playback playback;
};

}  // namespace

TEST(Playback, An_answer_comes_as_long_after_its_command_as_recorded_less_the_lead) {
    PlayedHost played({{100ms, kHost, "S\r\n", 6}, {2100ms, kBalance, "S S 1 g\r\n", 7}});
    played.Send("S\r");
    EXPECT_THAT(played.answers, IsEmpty());
    played.Send("\n");
    EXPECT_THAT(played.answers, ElementsAre(Pair(1800, "S S 1 g\r\n")));
    EXPECT_TRUE(played.playback.Conclude());
    EXPECT_THAT(played.complaints, IsEmpty());
}

TEST(Playback, Several_commands_and_several_answers_keep_their_order_and_their_times) {
    PlayedHost played({{0ms, kHost, "@\r\n", 6},
                       {0ms, kHost, "S\r\n", 7},
                       {10ms, kBalance, "I4\r\n", 8},
                       {1200ms, kBalance, "S S\r\n", 9},
                       {1201ms, kResult, "weigh 1 4", 10},
                       {1300ms, kHost, "SI\r\n", 11},
                       {1700ms, kBalance, "S D\r\n", 12}});
    played.Send("@\r\n");
    EXPECT_THAT(played.answers, IsEmpty());
    played.Send("S\r\n");
    EXPECT_THAT(played.answers, ElementsAre(Pair(0, "I4\r\n"), Pair(1000, "S S\r\n")));
    played.Send("SI\r\n");
    EXPECT_EQ(played.answers.back(), std::make_pair(200L, std::string("S D\r\n")));
    EXPECT_TRUE(played.playback.Conclude());
}

TEST(Playback, What_stands_ahead_of_the_first_command_comes_when_the_port_is_opened_once) {
    PlayedHost played({{500ms, kBalance, "I4\r\n", 6}, {900ms, kHost, "S\r\n", 7}});
    played.playback.Open(played.Take());
    played.playback.Open(played.Take());
    EXPECT_THAT(played.answers, ElementsAre(Pair(300, "I4\r\n")));
}

TEST(Playback, Commands_without_a_line_end_are_known_as_they_are_recorded) {
    PlayedHost played({{0ms, kHost, "#", 6}, {0ms, kBalance, "1+ 5 g\r\n", 7}});
    played.Send("#");
    EXPECT_THAT(played.answers, ElementsAre(Pair(0, "1+ 5 g\r\n")));
}

TEST(Playback, A_departure_is_told_with_the_line_and_the_record_goes_on_behind_it) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6}, {0ms, kBalance, "S S\r\n", 7}});
    played.Send("SI\r\n@\r\nS\r\n");
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:6: the host departs from the record: it sends \"SI\\r\\n\", "
                            "the record has \"S\\r\\n\""));
    EXPECT_THAT(played.answers, ElementsAre(Pair(0, "S S\r\n")));
    EXPECT_FALSE(played.playback.Conclude());
}

TEST(Playback, Keys_ahead_of_the_expected_one_are_told) {
    PlayedHost played({{0ms, kHost, "#", 6}});
    played.Send("T#");
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:6: the host departs from the record: it sends \"T\", the "
                            "record has \"#\""));
}

TEST(Playback, A_host_that_goes_on_behind_the_end_is_told_once) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6}, {0ms, kBalance, "S S\r\n", 7}});
    played.Send("S\r\nS\r\nS\r\n");
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:7: the host goes on behind the end of the record: it sends "
                            "\"S\\r\\n\""));
    EXPECT_FALSE(played.playback.Conclude());
}

TEST(Playback, A_host_that_ends_early_is_told_what_it_has_not_sent) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6}, {500ms, kHost, "SI\r\n", 7}});
    played.Send("S\r\n");
    EXPECT_FALSE(played.playback.Conclude());
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:7: the host has ended without sending \"SI\\r\\n\""));
}

TEST(Playback, Half_a_command_at_the_end_is_told_as_well) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6}});
    played.Send("S\r");
    EXPECT_FALSE(played.playback.Conclude());
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:6: the host departs from the record: it sends \"S\\r\", the "
                            "record has \"S\\r\\n\""));
}

TEST(Playback, A_record_without_any_command_is_followed_by_who_is_silent) {
    PlayedHost played({{0ms, kBalance, "1 g\r\n", 6}, {5ms, kHost, "", 7}});
    EXPECT_TRUE(played.playback.Conclude());
}

TEST(Playback, A_host_that_sends_without_a_line_end_is_told_in_pieces) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6}});
    played.Send(std::string(300, 'x'));
    EXPECT_THAT(played.complaints,
                ElementsAre("a.record:6: the host departs from the record: it sends \"" +
                            std::string(256, 'x') + "\", the record has \"S\\r\\n\""));
}

TEST(Playback, What_else_happened_on_the_line_is_said_and_is_no_departure) {
    PlayedHost played({{0ms, kHost, "S\r\n", 6},
                       {10ms, Entry::Kind::Event, "/dev/ttyUSB0 unplugged", 7},
                       {2000ms, kBalance, "S S 1 g\r\n", 8}});
    played.Send("S\r\n");
    EXPECT_THAT(played.answers, ElementsAre(Pair(1800, "S S 1 g\r\n")));
    EXPECT_THAT(played.complaints, ElementsAre("a.record:7: not replayed: /dev/ttyUSB0 unplugged"));
    EXPECT_TRUE(played.playback.Conclude());
}
