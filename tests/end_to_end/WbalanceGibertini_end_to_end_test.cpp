#include <gtest/gtest.h>
#include <wbalance/WbalanceGibertini.h>
#include <wbalance/WithLineReadiness.h>

#include <thread>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// A Gibertini balance on /dev/ttyS0, the driver with a readiness of the line's alone, and what a
/// host sees of a reading.
class WbalanceGibertiniEndToEnd : public testing::Test {
 protected:
    simulator::ConnectedInstrument& Have(const Options& options) {
        return bench_.Place("gibertini", options);
    }
    int Read() { return driver_.Weight(1, &weight_, &decimals_); }

    VirtualBench bench_;
    WithLineReadiness<WbalanceGibertini> driver_;
    double weight_ = -1;
    int decimals_ = -1;
};

}  // namespace

TEST_F(WbalanceGibertiniEndToEnd, A_stable_weight_at_the_delivered_line_settings) {
    auto& balance = Have(Options().WithLoad(123.45));
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, 123.45);
    EXPECT_EQ(decimals_, 2);
    EXPECT_EQ(balance.SentByHost(), "B\r");
    EXPECT_EQ(balance.SentByInstrument(), "    123.45 g   DS\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("9600,7N1"));
}

TEST_F(WbalanceGibertiniEndToEnd, A_parity_that_the_host_sets_is_set) {
    auto& balance = Have(Options().WithLoad(-12.5).At("9600,7E1").WithPacing());
    driver_.SetCommConfig(9600, Cwbalance::ParityEven, 7, 0, 0, 1, 'S');
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, -12.5);
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("9600,7E1"));
}

TEST_F(WbalanceGibertiniEndToEnd, A_moving_pan_is_read_with_success) {
    auto& balance = Have(Options().WithLoad(12.5).WithFault("busy"));
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(balance.SentByInstrument(), "     12.50 g   DI\r\n");
}

TEST_F(WbalanceGibertiniEndToEnd, A_late_answer_is_read_on_for) {
    auto& balance = Have(Options().WithLoad(12.5).WithFault("late=4s"));
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, 12.5);
    EXPECT_EQ(balance.SentByHost(), "B\r");
}

TEST_F(WbalanceGibertiniEndToEnd, Continuous_output_in_whole_records_is_read_with_success) {
    Have(Options().WithLoad(12.5).With("continuous").With("interval=2s"));
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, 12.5);
}

TEST_F(WbalanceGibertiniEndToEnd, Tare_tares) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(balance.SentByHost(), "T\r");
    EXPECT_EQ(balance.SentByInstrument(), "     12.50 g   TS\r\n");
    EXPECT_EQ(Read(), 1);
    EXPECT_EQ(weight_, 0.0);
}

TEST_F(WbalanceGibertiniEndToEnd, Tare_takes_the_second_record_that_says_it_is_done) {
    auto& balance = Have(Options().WithLoad(0).With("tare-done"));
    balance.SetLoad(50);
    EXPECT_EQ(driver_.Tare(), 1);
    EXPECT_EQ(Read(), 1);
    EXPECT_NEAR(weight_, 0.0, 0.02);  // at rest is what changes by no more than a step
}

TEST_F(WbalanceGibertiniEndToEnd, Tare_of_an_overloaded_balance_fails) {
    auto& balance = Have(Options().WithLoad(700));
    EXPECT_EQ(driver_.Tare(), 0);
    EXPECT_EQ(balance.SentByInstrument(), "    700.00 g   OE\r\n");
}

TEST_F(WbalanceGibertiniEndToEnd, The_operations_without_a_command_send_none) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(driver_.IsReady(), 1);
    EXPECT_EQ(driver_.TareSet(5.0), 0);
    EXPECT_EQ(driver_.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.SentByHost(), "");
    EXPECT_TRUE(balance.IsOpenedByHost());
}

// Each of these costs the driver's 20 s, so that they are read side by side.
TEST(WbalanceGibertiniRefused, What_is_no_valid_record_is_refused_for_20_s) {
    struct Case {
        const char* device;
        int port;
        Options options;
        double load;
        double seen;
        int result = -1;
        double weight = -1;
    };
    Case cases[] = {
        {"/dev/ttyS0", 0, Options(), 700, 700.0},  // over-range: refused, and yet written
        {"/dev/ttyS1", 1, Options().With("protocol=euro"), 12.5, -1},
        {"/dev/ttyS2", 2, Options().With("protocol=printer"), 12.5, -1},
        {"/dev/ttyS3", 3, Options().WithFault("truncated=12"), 12.5, -1},
        {"/dev/ttyS4", 4, Options().WithFault("silent"), 12.5, -1},
    };
    VirtualBench bench;
    std::vector<std::thread> hosts;
    for (Case& each : cases) {
        bench.Place("gibertini", each.options.On(each.device).WithLoad(each.load));
        hosts.emplace_back([&each] {
            WithLineReadiness<WbalanceGibertini> driver;
            driver.SetCommPort(each.port);
            each.result = driver.Weight(1, &each.weight, nullptr);
        });
    }
    for (std::thread& host : hosts)
        host.join();
    for (const Case& each : cases) {
        EXPECT_EQ(each.result, 0) << each.device;
        EXPECT_EQ(each.weight, each.seen) << each.device;
    }
}
