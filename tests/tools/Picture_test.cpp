#include "monitor/Picture.h"

#include <gmock/gmock.h>

#include "output/Columns.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using tool::DisplayedBalance;
using tool::PictureOf;
using tool::Stability;

namespace {

const DisplayedBalance::Clock::time_point kNow{std::chrono::hours(1)};

DisplayedBalance Weighing(const std::string& name, const std::string& digits,
                          std::chrono::seconds age = std::chrono::seconds(0)) {
    DisplayedBalance balance;
    balance.name = name;
    balance.received = true;
    balance.receivedAt = kNow - age;
    balance.freshFor = std::chrono::seconds(2);
    balance.reading.meaning = tool::Meaning::Weight;
    balance.reading.stability = Stability::Stable;
    balance.reading.digits = digits;
    balance.reading.unit = "g";
    balance.statistics.Add(DisplayedBalance::Clock::duration(0), balance.reading);
    return balance;
}

DisplayedBalance Lost(const std::string& name) {
    DisplayedBalance balance = Weighing(name, "5.67");
    balance.lost =
        "no answer; is the balance switched on, the cable plugged in, and are the line settings "
        "those of the balance?";
    return balance;
}

DisplayedBalance Silent(const std::string& name) {
    DisplayedBalance balance;
    balance.name = name;
    return balance;
}

std::vector<DisplayedBalance> FourBalances() {
    return {Weighing("weighing-table /dev/ttyS0", "12.34"), Lost("drying /dev/ttyUSB0"),
            Weighing("oven /dev/ttyUSB1", "-1234.567"), Silent("scale /dev/ttyUSB2")};
}

std::vector<DisplayedBalance> ThirtyBalances() {
    std::vector<DisplayedBalance> balances;
    for (int i = 0; i < 30; ++i) {
        const std::string name = "drying /dev/ttyUSB" + std::to_string(i);
        balances.push_back(i % 10 == 9 ? Lost(name) : Weighing(name, "12.34"));
    }
    return balances;
}

TEST(Picture, One_balance_is_shown_large) {
    EXPECT_THAT(
        PictureOf({Weighing("weighing-table /dev/ttyS0", "12.34")}, {80, 24}, kNow),
        ElementsAre("weighing-table /dev/ttyS0",  //
                    "        _   _    ",          //
                    "      | _|  _||_|",          //
                    "      ||_ . _|  | g",        //
                    "  stable, steady",
                    "  n 1  min 12.34  max 12.34  mean 12.340  sd 0.000  drift +0.000 g/min", ""));
}

TEST(Picture, One_balance_has_room_in_20_columns_and_5_rows) {
    EXPECT_THAT(PictureOf({Weighing("weighing-table /dev/ttyS0", "12.34")}, {20, 5}, kNow),
                ElementsAre("weighing-table /de>", "  12.34 g  stable,>", "  n 1  min 12.34  >"));
}

TEST(Picture, Four_balances_are_shown_small_in_24_rows) {
    EXPECT_THAT(
        PictureOf(FourBalances(), {80, 24}, kNow),
        ElementsAre(
            "weighing-table /dev/ttyS0", "  12.34 g  stable, steady",
            "  n 1  min 12.34  max 12.34  mean 12.340  sd 0.000  drift +0.000 g/min",
            "drying /dev/ttyUSB0",
            "  LOST: no answer; is the balance switched on, the cable plugged in, and are t>",
            "  n 1  min 5.67  max 5.67  mean 5.670  sd 0.000  drift +0.000 g/min",
            "oven /dev/ttyUSB1", "  -1234.567 g  stable, steady",
            "  n 1  min -1234.567  max -1234.567  mean -1234.5670  sd 0.0000  drift +0.0000>",
            "scale /dev/ttyUSB2", "  waiting for the first reading"));
}

TEST(Picture, Four_balances_have_a_line_each_where_there_is_no_more_room) {
    EXPECT_THAT(
        PictureOf(FourBalances(), {80, 5}, kNow),
        ElementsAre(
            "weighing-table /dev/ttyS0 12.34 g  stable, steady",
            "drying /dev/ttyUSB0       LOST: no answer; is the balance switched on, the cab>",
            "oven /dev/ttyUSB1         -1234.567 g  stable, steady",
            "scale /dev/ttyUSB2        waiting for the first reading"));
    EXPECT_THAT(PictureOf(FourBalances(), {20, 5}, kNow),
                ElementsAre("</ttyS0 12.34 g  s>", "<tyUSB0 LOST: no a>", "<tyUSB1 -1234.567 >",
                            "<tyUSB2 waiting fo>"));
}

TEST(Picture, Balances_that_have_no_room_are_counted_and_those_of_them_that_are_lost) {
    EXPECT_THAT(PictureOf(ThirtyBalances(), {20, 5}, kNow),
                ElementsAre("<tyUSB0 12.34 g  s>", "<tyUSB1 12.34 g  s>", "<tyUSB2 12.34 g  s>",
                            "and 27 more, 3 lost"));
    const auto picture = PictureOf(ThirtyBalances(), {40, 12}, kNow);
    EXPECT_THAT(picture, SizeIs(11));
    EXPECT_EQ(picture[9], "<g /dev/ttyUSB9 LOST: no answer; is th>");
    EXPECT_EQ(picture[10], "and 20 more, 2 lost");
    EXPECT_THAT(PictureOf(ThirtyBalances(), {80, 31}, kNow), SizeIs(30));
    EXPECT_THAT(PictureOf(ThirtyBalances(), {20, 2}, kNow), ElementsAre("and 30 more, 3 lost"));
}

TEST(Picture, Has_room_on_a_screen_of_any_size) {
    const std::vector<DisplayedBalance> one = {Weighing("天平天平天平 /dev/ttyUSB1", "-1234.567")};
    for (const auto& balances : {one, FourBalances(), ThirtyBalances()}) {
        for (std::size_t columns = 0; columns < 100; columns += 3) {
            for (std::size_t rows = 0; rows < 70; rows += rows < 9 ? 1 : 7) {
                const auto picture = PictureOf(balances, {columns, rows}, kNow);
                ASSERT_LE(picture.size(), rows == 0 ? 0 : rows - 1) << columns << "x" << rows;
                for (const auto& line : picture)
                    ASSERT_LT(tool::WidthOf(line), columns) << line;
            }
        }
    }
}

TEST(Picture, A_number_too_wide_to_be_shown_large_is_shown_small) {
    const auto picture = PictureOf({Weighing("oven /dev/ttyS0", "-1234.567")}, {31, 24}, kNow);
    EXPECT_THAT(picture, Contains("  -1234.567 g  stable, steady"));
    EXPECT_THAT(PictureOf({Weighing("oven /dev/ttyS0", "-1234.567")}, {32, 24}, kNow), SizeIs(7));
}

TEST(Picture, A_weight_that_is_not_fresh_has_its_age) {
    using std::chrono::seconds;
    const auto stateAt = [](seconds age) {
        return PictureOf({Weighing("oven /dev/ttyS0", "5.00", age)}, {80, 24}, kNow)[4];
    };
    EXPECT_EQ(stateAt(seconds(2)), "  stable, steady");
    EXPECT_EQ(stateAt(seconds(3)), "  3 s ago: stable");
    EXPECT_EQ(stateAt(seconds(119)), "  119 s ago: stable");
    EXPECT_EQ(stateAt(seconds(200)), "  3 min ago: stable");
    EXPECT_EQ(stateAt(seconds(8000)), "  2 h ago: stable");
    EXPECT_THAT(PictureOf({Weighing("oven /dev/ttyS0", "5.00", seconds(9))}, {80, 2}, kNow),
                ElementsAre("oven /dev/ttyS0 5.00 g  9 s ago: stable"));
}

TEST(Picture, A_lost_balance_does_not_show_its_old_weight) {
    const auto picture = PictureOf({Lost("drying /dev/ttyUSB0")}, {80, 24}, kNow);
    EXPECT_EQ(picture[1], "             ");
    EXPECT_EQ(picture[2], "     _  _  _ ");
    EXPECT_EQ(picture[3], "             ");
    EXPECT_THAT(picture[4], HasSubstr("LOST: no answer; "));
}

TEST(Picture, An_overload_is_said_in_words) {
    DisplayedBalance balance = Weighing("oven /dev/ttyS0", "");
    balance.reading.meaning = tool::Meaning::Overload;
    EXPECT_THAT(PictureOf({balance}, {80, 24}, kNow)[4], HasSubstr("overload: more is on the pan"));
}

TEST(Picture, What_an_instrument_sends_moves_no_cursor) {
    DisplayedBalance balance = Weighing("oven /dev/ttyS0", "5.00");
    balance.reading.unit = "g\x1b[2J";
    balance.lost = "";
    EXPECT_THAT(PictureOf({balance}, {80, 2}, kNow),
                ElementsAre("oven /dev/ttyS0 5.00 g\\x1b[2J  stable, steady"));
}

}  // namespace
