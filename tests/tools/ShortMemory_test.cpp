// A monitored balance for which memory is short while it is connected to.

#include <gmock/gmock.h>
#include <poll.h>

#include <new>

#include "Examples.h"
#include "monitor/MonitoredBalance.h"

using examples::kOtherBalance;
using tool::MonitoredBalance;

namespace {

/// Begins a connection to a port that is not there, and takes in what the library says of it.
void Connect(MonitoredBalance& balance) {
    balance.Step(balance.NextStep());
    auto watched = balance.Watched();
    ASSERT_FALSE(watched.empty());
    poll(watched.data(), watched.size(), -1);
    balance.Step(balance.NextStep());
}

TEST(ShortMemory, Is_a_loss_of_the_balance_which_is_looked_for_again) {
    int traced = 0;
    std::string lost;
    MonitoredBalance::Listener listener;
    listener.onLost = [&lost](const auto&, const std::string& reason) { lost += reason; };
    listener.onTrace = [&traced](const tool::TraceText&) {
        ++traced;
        throw std::bad_alloc();
    };
    const tool::DriverInfo& driver = tool::FindDriver(kOtherBalance);
    MonitoredBalance balance(
        {&driver, tool::PortName("98", false), driver.line, 1, 1, std::chrono::seconds(1)},
        listener);
    Connect(balance);
    EXPECT_EQ(lost, "the memory does not suffice for this balance now");
    EXPECT_TRUE(balance.Watched().empty());
    Connect(balance);
    EXPECT_EQ(traced, 2);
    EXPECT_EQ(lost, "the memory does not suffice for this balance now");
}

}  // namespace
