#include <gtest/gtest.h>
#include <wbalance/WbalanceScaleHouseALD.h>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

class WbalanceScaleHouseALDEndToEnd : public testing::Test {
 protected:
    /// One reading on a line that the driver has just opened.
    int Read(const Options& options) {
        bench.Place("scale-house", options);
        EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 1);
        return driver.Weight(0, &weight, &decimals);
    }

    VirtualBench bench;
    WbalanceScaleHouseALD driver;
    double weight = -1;
    int decimals = -1;
};

TEST_F(WbalanceScaleHouseALDEndToEnd, IsReady_opens_the_line_and_reads_one_ticket) {
    auto& balance = bench.Place("scale-house", Options().WithLoad(123.4));
    EXPECT_EQ(driver.IsReady(), 1);
    EXPECT_EQ(balance.SentByHost(), "P\r\n");
    EXPECT_EQ(balance.SentByInstrument(), "PROJ 12\r\n 123.40 g\r\n 0.00 g T\r\n 123.40 g N\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("2400,7N1"));
    EXPECT_TRUE(balance.IsOpenedByHost());
}

TEST_F(WbalanceScaleHouseALDEndToEnd, Weight_reads_the_net_line_and_reports_3_decimals) {
    EXPECT_EQ(Read(Options().WithLoad(-12.34)), 1);
    EXPECT_EQ(weight, -12.34);
    EXPECT_EQ(decimals, 3);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, Tare_zeroes_tares_and_reads_0) {
    auto& balance = bench.Place("scale-house", Options().WithLoad(50));
    EXPECT_EQ(driver.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "P\r\nZ\r\nT\r\nP\r\n");
    EXPECT_EQ(balance.SentByInstrument(),
              "PROJ 12\r\n 50.00 g\r\n 0.00 g T\r\n 50.00 g N\r\n"
              "PROJ 12\r\n 50.00 g\r\n 50.00 g T\r\n 0.00 g N\r\n");
}

TEST_F(WbalanceScaleHouseALDEndToEnd, Tare_reads_the_first_of_the_tickets_printed_unasked) {
    // Z, T and P leave together; the ticket of Z, with the container's 50 g, stands ahead.
    auto& balance = bench.Place("scale-house", Options().WithLoad(50).With("prints-after-tare"));
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(balance.SentByHost(), "P\r\nZ\r\nT\r\nP\r\n");
}

TEST_F(WbalanceScaleHouseALDEndToEnd, TareSet_and_RestoreFactorySettings_send_nothing) {
    auto& balance = bench.Place("scale-house", Options());
    EXPECT_EQ(driver.TareSet(5.0), 0);
    EXPECT_EQ(driver.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
}

TEST_F(WbalanceScaleHouseALDEndToEnd, A_ticket_without_a_net_line_gives_its_first_line_in_grams) {
    EXPECT_EQ(Read(Options().WithLoad(130.4).With("ticket=no-net-line")), 1);
    EXPECT_EQ(weight, 130.4);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, A_tare_line_at_the_start_gives_the_tare_for_the_weight) {
    // The empty tare passes the test and is the first line in grams: 0.00 with 130.4 g on the pan.
    EXPECT_EQ(Read(Options().WithLoad(130.4).With("ticket=tare-line-first")), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, Two_blanks_before_the_unit_read_as_0_00) {
    EXPECT_EQ(Read(Options().WithLoad(130.4).With("ticket=net-line-only").With("wide-gap")), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, A_ticket_without_a_weight_fails) {
    EXPECT_EQ(Read(Options().WithLoad(700)), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 3);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, A_ticket_in_kilograms_fails) {
    EXPECT_EQ(Read(Options().WithLoad(130.4).With("unit=kg")), 0);
}

TEST_F(WbalanceScaleHouseALDEndToEnd, A_silent_balance_fails_and_the_port_stays_open) {
    auto& balance = bench.Place("scale-house", Options().WithLoad(50).WithFault("silent"));
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_TRUE(balance.IsOpenedByHost());
}

}  // namespace
