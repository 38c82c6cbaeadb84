// What every driver has from its base class and the transport, over the real serial-port library.

#include <gtest/gtest.h>
#include <wbalance/WithLineReadiness.h>
#include <wbalance/wbalance.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <thread>

#include "Examples.h"
#include "simulator/VirtualBench.h"
#include "simulator/line/VirtualLine.h"

using namespace std::chrono_literals;
using examples::kBalanceAt8N1;
using simulator::ConnectedInstrument;
using simulator::HostLine;
using simulator::Options;
using simulator::VirtualBench;
using simulator::VirtualLine;

namespace {

/// Waits for what another thread is about to do; the tests' only clock is this generous limit.
bool Eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 500 && !condition(); ++i)
        std::this_thread::sleep_for(10ms);
    return condition();
}

using Driver = WithLineReadiness<examples::BalanceAt8N1>;

class CwbalanceEndToEnd : public testing::Test {
 protected:
    CwbalanceEndToEnd() : instrument(bench.Place(kBalanceAt8N1, Options().WithLoad(12.3456))) {}

    void RefuseOpen(int error) {
        instrument.WithLine(
            [=](HostLine& line) { dynamic_cast<VirtualLine&>(line).RefuseOpen(error); });
    }

    int Weigh() { return driver->Weight(2, &weight, nullptr); }

    /// The bench learns of a close a moment later.
    bool IsClosedSoon() {
        return Eventually([this] { return !instrument.IsOpenedByHost(); });
    }

    VirtualBench bench;
    ConnectedInstrument& instrument;
    std::unique_ptr<Driver> driver = std::make_unique<Driver>();
    double weight = -1;
};

struct Line {
    const char* name;
    int baud, parity, dataBits, stopBits, flowControl;
    const char* line;
};

class CwbalanceLine : public CwbalanceEndToEnd, public testing::WithParamInterface<Line> {};

}  // namespace

TEST_P(CwbalanceLine, Is_set_as_the_codes_say) {
    const Line& codes = GetParam();
    ASSERT_EQ(driver->SetCommConfig(codes.baud, codes.parity, codes.dataBits, codes.stopBits,
                                    codes.flowControl, 1, 'S'),
              1);
    EXPECT_EQ(driver->IsReady(), 1);
    EXPECT_EQ(instrument.HostSettings().Text(), codes.line);
}

INSTANTIATE_TEST_SUITE_P(
    Codes, CwbalanceLine,
    testing::Values(Line{"Even", 2400, 2, 7, 0, 0, "2400,7E1"},
                    Line{"Odd_and_two_stop_bits", 1200, 1, 7, 2, 0, "1200,7O2"},
                    Line{"None", 9600, 0, 8, 0, 0, "9600,8N1"},
                    Line{"Mark", 600, 3, 7, 0, 0, "600,7M1"},
                    Line{"Space", 4800, 4, 7, 0, 0, "4800,7S1"},
                    Line{"Hardware_handshake", 19200, 0, 8, 0, 3, "19200,8N1,rtscts"},
                    Line{"Software_handshake", 9600, 0, 8, 0, 16, "9600,8N1,xonxoff"},
                    // Unknown codes leave what the opening has set.
                    Line{"Unknown_codes", 2400, 1024, 5, 3, 1, "2400,8N1"},
                    // A serial driver knows no half stop bit.
                    Line{"One_and_a_half_stop_bits", 2400, 2, 7, 1, 0, "2400,7E1"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CwbalanceEndToEnd,
       After_an_open_that_failed_the_next_operation_fails_too_and_a_third_opens) {
    RefuseOpen(ENODEV);
    EXPECT_EQ(Weigh(), 0);
    RefuseOpen(0);
    EXPECT_EQ(Weigh(), 0);
    EXPECT_EQ(Weigh(), 1);
    EXPECT_EQ(weight, 12.3456);
}

TEST_F(CwbalanceEndToEnd, A_port_that_stays_away_is_tried_at_every_second_operation) {
    RefuseOpen(EACCES);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(Weigh(), 0);
    RefuseOpen(0);
    EXPECT_EQ(Weigh(), 1);
}

TEST_F(CwbalanceEndToEnd, The_port_stays_open_and_a_close_lets_go_of_it) {
    EXPECT_EQ(Weigh(), 1);
    EXPECT_TRUE(instrument.IsOpenedByHost());
    EXPECT_EQ(driver->CloseCommPort(), 1);
    EXPECT_TRUE(IsClosedSoon());
    EXPECT_EQ(Weigh(), 1);
    EXPECT_TRUE(instrument.IsOpenedByHost());
}

TEST_F(CwbalanceEndToEnd, Destroying_the_driver_closes_the_port) {
    EXPECT_EQ(Weigh(), 1);
    driver.reset();
    EXPECT_TRUE(IsClosedSoon());
    driver = std::make_unique<Driver>();
    EXPECT_EQ(Weigh(), 1);
}

TEST_F(CwbalanceEndToEnd, Changed_settings_reach_the_open_port_at_the_next_operation) {
    EXPECT_EQ(Weigh(), 1);
    driver->SetCommConfig(2400, 2, 7, 0, 0, 0, 'S');
    EXPECT_EQ(instrument.HostSettings().Text(), "9600,8N1");
    EXPECT_EQ(Weigh(), 0);
    EXPECT_EQ(instrument.HostSettings().Text(), "2400,7E1");
    driver->SetCommConfig(9600, 0, 8, 0, 0, 1, 'S');
    EXPECT_EQ(Weigh(), 1);
}

TEST_F(CwbalanceEndToEnd, A_time_out_of_61_s_closes_the_port_and_ends_the_object) {
    EXPECT_EQ(Weigh(), 1);
    driver->SetCommConfig(9600, 0, 8, 0, 0, 61, 'S');
    EXPECT_EQ(Weigh(), 0);
    EXPECT_TRUE(IsClosedSoon());
    driver->SetCommConfig(9600, 0, 8, 0, 0, 1, 'S');
    EXPECT_EQ(Weigh(), 0);
    EXPECT_EQ(driver->CloseCommPort(), 0);
}

TEST_F(CwbalanceEndToEnd, A_pulled_adapter_ends_the_object_and_a_new_one_finds_it_again) {
    auto& adapter = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB3").WithLoad(20));
    driver->SetCommPort(3);
    driver->SetCommConfig(9600, 0, 8, 0, 0, 1, 'U');
    EXPECT_EQ(Weigh(), 1);
    EXPECT_EQ(weight, 20.0);
    adapter.Unplug();
    EXPECT_EQ(Weigh(), 0);
    adapter.PlugIn();
    EXPECT_EQ(Weigh(), 0);
    driver = std::make_unique<Driver>();
    driver->SetCommPort(3);
    driver->SetCommConfig(9600, 0, 8, 0, 0, 1, 'U');
    EXPECT_EQ(Weigh(), 1);
}

TEST_F(CwbalanceEndToEnd, What_came_before_an_operation_is_not_its_answer) {
    EXPECT_EQ(Weigh(), 1);
    driver->SetCommConfig(9600, 0, 8, 0, 0, 0, 'S');
    instrument.AddFault("late=1500ms");
    EXPECT_EQ(Weigh(), 0);
    instrument.ClearFaults();
    instrument.ClearLog();
    instrument.SetLoad(0);
    ASSERT_TRUE(Eventually([&] { return !instrument.SentByInstrument().empty(); }));
    EXPECT_NE(Weigh(), 0);
    EXPECT_LT(weight, 6.0);
}
