// wbalance with several simulated instruments at once, with one of the test's own, and with locks.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <sstream>
#include <thread>

#include "Examples.h"
#include "RunProgram.h"
#include "simulator/VirtualBench.h"
#include "simulator/line/VirtualLine.h"

using examples::kBalance;
using examples::kBalanceWithPanel;
using examples::kOtherBalance;
using simulator::Options;
using simulator::VirtualBench;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// An instrument that answers anything with more than any answer has.
class Flooding : public simulator::Dialect {
 public:
    explicit Flooding(simulator::BalanceModel& balance) : Dialect(balance, "\r\n") {}

 protected:
    void Unknown(const std::string& /*command*/) override { Say(std::string(2000, '1')); }
    void PrintKey() override {}
};

TEST(Bench, Doctor_and_weigh_say_that_more_came_than_an_answer_can_hold) {
    simulator::CatalogEntry flooding = simulator::FindInstrument(kBalance);
    flooding.createDialect = [](simulator::BalanceModel& balance, const simulator::Switches&) {
        return std::make_unique<Flooding>(balance);
    };
    VirtualBench bench;
    bench.Place(flooding, Options().On("/dev/ttyUSB0"));
    constexpr char said[] =
        "/dev/ttyUSB0: more came than an answer can hold, and the library gave up; switch the "
        "balance's continuous output off. It said: libwbalance: a trace line does not fit its "
        "buffer of 1024 "
        "bytes\n";

    const Ran weighed = Wbalance("weigh -d " + kBalance + " -p 0 --usb");
    EXPECT_EQ(weighed.errors, std::string("wbalance: ") + said);
    EXPECT_EQ(weighed.exitCode, 70);

    const Ran examined = Wbalance("doctor -d " + kBalance + " -p 0 --usb");
    EXPECT_THAT(examined.output + examined.errors, HasSubstr(said));
    EXPECT_EQ(examined.exitCode, 70);
}

TEST(Bench, The_readings_of_several_balances_never_mix) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(11.11));
    bench.Place(kBalanceWithPanel, Options().On("/dev/ttyUSB0").WithLoad(22.22));
    bench.Place(kOtherBalance, Options().On("/dev/ttyUSB1").WithLoad(33.33));

    const Ran ran =
        Wbalance("monitor " + kBalance + "@0 " + kBalanceWithPanel + "@ttyUSB0 " + kOtherBalance +
                 "@ttyUSB1 -n 5 -i 0 "
                 "-t 0 --csv");

    std::istringstream lines(ran.output);
    std::string line;
    std::getline(lines, line);
    int readings = 0;
    for (; std::getline(lines, line); ++readings) {
        if (line.find("," + kBalance + ",") != std::string::npos) {
            EXPECT_THAT(line, HasSubstr(",\"/dev/ttyS0\",weight,11.11,"));
        } else if (line.find("," + kBalanceWithPanel + ",") != std::string::npos) {
            EXPECT_THAT(line, HasSubstr(",\"/dev/ttyUSB0\",weight,22.2200,"));
        } else {
            EXPECT_THAT(line, HasSubstr("," + kOtherBalance + ",\"/dev/ttyUSB1\",weight,33.33"));
        }
    }
    EXPECT_GE(readings, 15);
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Bench, Monitor_says_of_an_adapter_that_has_gone_what_leads_to_it_again) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalance, Options().On("/dev/ttyUSB0"));
    balance.AddFault("silent");
    std::thread hand([&balance] {
        while (balance.SentByHost().empty())
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        balance.Unplug();
    });
    const TemporaryFile log;
    const Ran ran = RunShell(WBALANCE " monitor " + kBalance + "@ttyUSB0 -t 20 --json --log " +
                             log.Path() + " & until grep --quiet lost " + log.Path() +
                             "; do sleep 0.05; done; kill $!; wait $!");
    hand.join();
    EXPECT_THAT(ran.output,
                HasSubstr("\"message\":\"/dev/ttyUSB0 has gone; if it comes back under another "
                          "number, only its stable name leads to it (`wbalance ports`)\""));
    EXPECT_EQ(ran.exitCode, 0);
}

bool IsLocked() {
    return access("/var/lock/LCK..ttyS0", F_OK) == 0;
}

TEST(Bench, No_lock_file_is_left_behind_by_a_weighing) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    EXPECT_EQ(Wbalance("weigh -d " + kBalance + " -t 0").output, "10.00 g\n");
    EXPECT_FALSE(IsLocked());
}

TEST(Bench, No_lock_file_is_left_behind_by_a_weighing_that_is_interrupted) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalance, Options().On("/dev/ttyS0"));
    balance.AddFault("silent");
    bool wasLocked = false;
    std::thread look([&wasLocked] {
        for (int i = 0; i < 300 && !wasLocked; ++i) {
            wasLocked = IsLocked();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    EXPECT_EQ(RunShell("timeout --preserve-status -s INT 3 env " WBALANCE " weigh -d " + kBalance +
                       " -t 60")
                  .exitCode,
              130);
    look.join();
    EXPECT_TRUE(wasLocked);
    EXPECT_FALSE(IsLocked());
}

TEST(Bench, A_monitor_that_shall_outlive_its_terminal_does) {
    VirtualBench bench;
    bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    const TemporaryFile lines;
    // As nohup starts a program; the signal comes when there have been readings.
    const Ran ran = RunShell(
        "(trap '' HUP; exec env " WBALANCE " monitor " + kBalance + "@0 -n 5 -i 0 -t 0 --csv >" +
        lines.Path() + ") & for i in $(seq 600); do [ $(wc -l <" + lines.Path() +
        ") -lt 2 ] || break; sleep 0.05; done; kill -HUP $!; wait $!; echo $? $(wc -l <" +
        lines.Path() + ")");
    EXPECT_EQ(ran.output, "0 6\n");
}

TEST(Bench, A_balance_that_has_fallen_silent_does_not_give_its_old_weight) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalance, Options().On("/dev/ttyS0").WithLoad(10));
    EXPECT_EQ(Wbalance("weigh -d " + kBalance + " -t 0").output, "10.00 g\n");
    balance.AddFault("silent");
    EXPECT_EQ(Wbalance("weigh -d " + kBalance + " -t 0").output, "");
}

}  // namespace
