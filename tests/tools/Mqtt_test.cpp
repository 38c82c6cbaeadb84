// The recipe of docs/wbalance.md against a real broker on this computer.

#include <gmock/gmock.h>
#include <unistd.h>

#include "RunProgram.h"

using testing::HasSubstr;

namespace {

std::string Port() {
    return std::to_string(20000 + getpid() % 20000);
}

TEST(Mqtt, The_weights_of_a_balance_reach_a_subscriber) {
    const TemporaryFile settings;
    settings.Write("listener " + Port() + " 127.0.0.1\nallow_anonymous true\n");
    const std::string broker = std::string(MOSQUITTO) + " -c " + settings.Path();
    const std::string subscriber = std::string(MOSQUITTO_SUB) + " -p " + Port() + " -t lab/balance";
    const std::string publisher = std::string(WBALANCE_SIM) + " mettler-toledo --load 12.34 -- " +
                                  WBALANCE + " monitor mettler-toledo@0 -n 3 -i 0 -t 0 --json | " +
                                  MOSQUITTO_PUB + " -l -q 1 -p " + Port() + " -t lab/balance";

    const Ran ran = RunShell(broker + " >/dev/null & broker=$!; sleep 1; " + subscriber +
                             " -C 3 -W 30 & reader=$!; sleep 1; " + publisher +
                             "; wait $reader; code=$?; kill $broker; wait $broker; exit $code");

    EXPECT_EQ(ran.exitCode, 0) << ran.errors;
    EXPECT_THAT(ran.output, HasSubstr("\"value\":12.34"));
}

TEST(Mqtt, The_monitor_ends_when_the_broker_goes_so_that_the_unit_restarts_both) {
    const std::string publisher =
        std::string(MOSQUITTO_PUB) + " -l -p " + Port() + " -t lab/balance";
    const Ran ran =
        RunShell("timeout 20 " + std::string(WBALANCE_SIM) + " mettler-toledo --load 12.34 -- " +
                 WBALANCE + " monitor mettler-toledo@0 -i 0 -t 0 --json | " + publisher);
    EXPECT_NE(ran.exitCode, 0);
    EXPECT_NE(ran.exitCode, 124);
}

}  // namespace
