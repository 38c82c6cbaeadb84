// The recipe of docs/wbalance.md against a real broker on this computer.

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>

#include "Examples.h"
#include "RunProgram.h"

using examples::kBalance;
using testing::HasSubstr;

namespace {

std::string Port() {
    return std::to_string(20000 + getpid() % 20000);
}

// By its address: a bare system does not know "localhost".
std::string AtBroker() {
    return " -h 127.0.0.1 -p " + Port();
}

// A broker of this test's own, and the shell lines that wait until it answers.
class Broker {
 public:
    Broker() { settings_.Write("listener " + Port() + " 127.0.0.1\nallow_anonymous true\n"); }

    std::string Start() const {
        return MOSQUITTO " -c " + settings_.Path() +
               " >/dev/null 2>&1 & broker=$!; for i in $(seq 300); do " MOSQUITTO_PUB + AtBroker() +
               " -t ready -n 2>/dev/null && break; sleep 0.1; done; ";
    }
    static std::string End() { return "kill $broker; wait $broker; "; }

 private:
    const TemporaryFile settings_;
};

std::string Publisher() {
    return std::string(WBALANCE_SIM) + " " + kBalance + " --load 12.34 -- " + WBALANCE +
           " monitor " + kBalance + "@0 -i 0 -t 0 --json | " + MOSQUITTO_PUB + " -l -q 1" +
           AtBroker() + " -t lab/balance";
}

std::string Subscriber(int messages) {
    return std::string(MOSQUITTO_SUB) + AtBroker() + " -t lab/balance -W 60 -C " +
           std::to_string(messages);
}

// The publisher in the background, as a group of processes that is ended at the end.
std::string InBackground(const std::string& command) {
    return "setsid sh -c '" + command + "' >/dev/null 2>&1 & service=$!; ";
}

constexpr char kEndService[] = "kill -- -$service; ";

TEST(Mqtt, The_weights_of_a_balance_reach_a_subscriber) {
    const Broker broker;
    const Ran ran = RunShell(broker.Start() + InBackground(Publisher()) + Subscriber(3) +
                             "; code=$?; " + kEndService + Broker::End() + "exit $code");
    EXPECT_EQ(ran.exitCode, 0) << ran.errors;
    EXPECT_THAT(ran.output, HasSubstr("\"value\":12.34"));
}

TEST(Mqtt, The_weights_go_on_when_the_broker_comes_back) {
    const Broker broker;
    const Ran ran = RunShell(broker.Start() + InBackground(Publisher()) + Subscriber(1) + " && { " +
                             Broker::End() + broker.Start() + Subscriber(1) + "; }; code=$?; " +
                             kEndService + Broker::End() + "exit $code");
    EXPECT_EQ(ran.exitCode, 0) << ran.errors;
    EXPECT_EQ(std::count(ran.output.begin(), ran.output.end(), '\n'), 2);
}

TEST(Mqtt, Without_a_broker_at_the_start_both_end_so_that_the_service_starts_them_again) {
    const std::string publisher =
        std::string(MOSQUITTO_PUB) + " -l" + AtBroker() + " -t lab/balance";
    const Ran ran =
        RunShell("timeout 20 " + std::string(WBALANCE_SIM) + " " + kBalance + " --load 12.34 -- " +
                 WBALANCE + " monitor " + kBalance + "@0 -i 0 -t 0 --json | " + publisher);
    EXPECT_NE(ran.exitCode, 0);
    EXPECT_NE(ran.exitCode, 124);
}

}  // namespace
