#include "simulator/line/Adapter.h"

#include <gmock/gmock.h>

#include <stdexcept>

using simulator::Adapter;
using simulator::UartSettings;
using testing::ElementsAre;
using testing::Pair;
using namespace std::chrono_literals;

namespace {

using Piece = std::pair<Adapter::Moment, std::size_t>;  // when, and of how many characters

/// The pieces in which the port hands over so many characters, sent without a pause from `start`
/// on.
std::vector<Piece> Pieces(const char* port, int count, const char* settings,
                          Adapter::Moment start = 0us) {
    Adapter adapter = Adapter::Parse(port);
    const UartSettings line = *UartSettings::Parse(settings);
    std::vector<Piece> all;
    const auto handOver = [&] {
        const auto due = *adapter.Due();
        all.emplace_back(due, adapter.HandOver(due).size());
    };
    for (int i = 1; i <= count; ++i) {
        const auto at = start + i * line.CharacterTime();
        if (adapter.Due() && *adapter.Due() < at) handOver();
        adapter.Receive({'0'}, at, line);
        if (*adapter.Due() <= at) handOver();
    }
    if (adapter.Due()) handOver();
    return all;
}

}  // namespace

TEST(Adapter, Without_one_each_character_comes_by_itself) {
    EXPECT_THAT(Pieces("character", 3, "1000,7E1"),
                ElementsAre(Pair(10ms, 1), Pair(20ms, 1), Pair(30ms, 1)));
}

TEST(Adapter, A_built_in_port_hands_over_8_and_the_rest_after_4_character_times) {
    EXPECT_THAT(Pieces("16550", 18, "10000,7E1"),
                ElementsAre(Pair(8ms, 8), Pair(16ms, 8), Pair(22ms, 2)));
    EXPECT_THAT(Pieces("16550:14", 18, "10000,7E1"), ElementsAre(Pair(14ms, 14), Pair(22ms, 4)));
    EXPECT_THAT(Pieces("16550:1", 2, "10000,7E1"), ElementsAre(Pair(1ms, 1), Pair(2ms, 1)));
}

TEST(Adapter, A_built_in_port_collects_nothing_below_2400_baud) {
    EXPECT_THAT(Pieces("16550", 2, "1000,7E1"), ElementsAre(Pair(10ms, 1), Pair(20ms, 1)));
    EXPECT_THAT(Pieces("16550:14", 2, "2399,7E1"), testing::SizeIs(2));
    EXPECT_THAT(Pieces("16550:14", 2, "2400,7E1"), testing::SizeIs(1));
}

TEST(Adapter, An_FTDI_hands_over_what_has_come_when_its_latency_timer_runs_out) {
    EXPECT_THAT(Pieces("ftdi", 20, "10000,7E1"), ElementsAre(Pair(16ms, 16), Pair(32ms, 4)));
    EXPECT_THAT(Pieces("ftdi", 4, "10000,7E1", 30ms), ElementsAre(Pair(32ms, 2), Pair(48ms, 2)));
    EXPECT_THAT(Pieces("ftdi:255", 20, "1000,7E1"), ElementsAre(Pair(255ms, 20)));
}

TEST(Adapter, An_FTDI_hands_over_a_full_packet_of_62_at_once_and_its_timer_begins_anew) {
    EXPECT_THAT(Pieces("ftdi:100", 70, "10000,7E1"), ElementsAre(Pair(62ms, 62), Pair(162ms, 8)));
}

TEST(Adapter, A_PL2303_and_a_CH341_hand_over_what_has_come_in_each_millisecond) {
    for (const char* port : {"pl2303", "ch341"})
        EXPECT_THAT(Pieces(port, 8, "40000,7E1"), ElementsAre(Pair(1ms, 4), Pair(2ms, 4))) << port;
    EXPECT_THAT(Pieces("ch341", 40, "1000000,7E1"), ElementsAre(Pair(320us, 32), Pair(1320us, 8)));
}

TEST(Adapter, Other_names_and_figures_are_refused_with_what_there_is) {
    for (const char* text : {"", "uart", "16550:", "16550:7", "16550:15", "ftdi:0", "ftdi:256",
                             "ftdi:fast", "pl2303:8", "character:1"})
        EXPECT_THROW(Adapter::Parse(text), std::invalid_argument) << text;
    EXPECT_THAT([] { Adapter::Parse("uart"); },
                testing::ThrowsMessage<std::invalid_argument>(
                    "no port hands characters over as \"uart\"; there are character, 16550, "
                    "16550:TRIGGER (1, 4, 8 or 14 characters), ftdi, ftdi:LATENCY (1 to 255 ms), "
                    "pl2303, ch341"));
}
