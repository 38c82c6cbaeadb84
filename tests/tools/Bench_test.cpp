// wbalance with several simulated instruments at once, and with ports that refuse to be opened.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <sstream>
#include <thread>

#include "RunProgram.h"
#include "simulator/VirtualBench.h"
#include "simulator/line/VirtualLine.h"

using simulator::Options;
using simulator::VirtualBench;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

Ran WeighAtRefusal(int error) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyUSB0"));
    balance.withLine([error](simulator::HostLine& line) {
        dynamic_cast<simulator::VirtualLine&>(line).refuseOpen(error);
    });
    return Wbalance("weigh -d mettler-toledo -p 0 --usb");
}

TEST(Bench, A_forbidden_port_names_the_group_that_may_open_it) {
    const Ran ran = WeighAtRefusal(EACCES);
    EXPECT_THAT(ran.errors, StartsWith("wbalance: /dev/ttyUSB0: permission denied; "));
    EXPECT_THAT(ran.errors, HasSubstr("group is dialout"));
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Bench, A_port_in_use_is_said_to_be_in_use) {
    const Ran ran = WeighAtRefusal(EBUSY);
    EXPECT_THAT(ran.errors, StartsWith("wbalance: /dev/ttyUSB0: the port is in use; "));
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Bench, A_node_without_a_device_is_said_to_have_none) {
    const Ran ran = WeighAtRefusal(ENODEV);
    EXPECT_THAT(ran.errors, HasSubstr("no device is behind it (No such device)"));
    EXPECT_EQ(ran.exitCode, 3);
}

TEST(Bench, Doctor_says_why_a_port_does_not_open) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyUSB0"));
    const auto diagnosisAt = [&balance](int error) {
        balance.withLine([error](simulator::HostLine& line) {
            dynamic_cast<simulator::VirtualLine&>(line).refuseOpen(error);
        });
        const Ran ran = Wbalance("doctor -d mettler-toledo -p 0 --usb");
        EXPECT_EQ(ran.exitCode, 3);
        return ran.output;
    };
    EXPECT_THAT(diagnosisAt(EACCES),
                HasSubstr("/dev/ttyUSB0: permission denied; its group is dialout"));
    EXPECT_THAT(diagnosisAt(EBUSY), HasSubstr("/dev/ttyUSB0: the port is in use; "));
    EXPECT_THAT(diagnosisAt(ENODEV), HasSubstr("no device is behind it (No such device)"));
}

TEST(Bench, Doctor_and_weigh_say_that_an_adapter_cannot_do_the_settings) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyUSB0"));
    balance.withLine([](simulator::HostLine& line) {
        dynamic_cast<simulator::VirtualLine&>(line).refuseSpeed(B2400);
    });
    constexpr char said[] =
        "/dev/ttyUSB0: the port refuses the line settings 2400,7E1; choose others with --line, or "
        "use another adapter\n";

    const Ran weighed = Wbalance("weigh -d mettler-toledo -p 0 --usb");
    EXPECT_EQ(weighed.errors, std::string("wbalance: ") + said);
    EXPECT_EQ(weighed.exitCode, 3);

    const Ran examined = Wbalance("doctor -d mettler-toledo -p 0 --usb");
    EXPECT_THAT(examined.output + examined.errors, HasSubstr(said));
    EXPECT_EQ(examined.exitCode, 3);
}

// An instrument that answers anything with more than any answer has.
class Flooding : public simulator::Dialect {
 public:
    explicit Flooding(simulator::BalanceModel& balance) : Dialect(balance, "\r\n") {}

 protected:
    void unknown(const std::string& /*command*/) override { say(std::string(2000, '1')); }
    void printKey() override {}
};

TEST(Bench, Doctor_and_weigh_say_that_more_came_than_an_answer_can_hold) {
    simulator::CatalogEntry flooding = simulator::findInstrument("mettler-toledo");
    flooding.createDialect = [](simulator::BalanceModel& balance, const simulator::Switches&) {
        return std::make_unique<Flooding>(balance);
    };
    VirtualBench bench;
    bench.place(flooding, Options().on("/dev/ttyUSB0"));
    constexpr char said[] =
        "/dev/ttyUSB0: more came than an answer can hold, and the library gave up; switch the "
        "balance's continuous output off. It said: libwbalance: a trace line does not fit its "
        "buffer of 1024 "
        "bytes\n";

    const Ran weighed = Wbalance("weigh -d mettler-toledo -p 0 --usb");
    EXPECT_EQ(weighed.errors, std::string("wbalance: ") + said);
    EXPECT_EQ(weighed.exitCode, 70);

    const Ran examined = Wbalance("doctor -d mettler-toledo -p 0 --usb");
    EXPECT_THAT(examined.output + examined.errors, HasSubstr(said));
    EXPECT_EQ(examined.exitCode, 70);
}

TEST(Bench, The_readings_of_several_balances_never_mix) {
    VirtualBench bench;
    bench.place("mettler-toledo", Options().on("/dev/ttyS0").withLoad(11.11));
    bench.place("mettler-xs", Options().on("/dev/ttyUSB0").withLoad(22.22));
    bench.place("radwag", Options().on("/dev/ttyUSB1").withLoad(33.33));

    const Ran ran = Wbalance(
        "monitor mettler-toledo@0 mettler-xs@ttyUSB0 radwag@ttyUSB1 -n 5 -i 0 "
        "-t 0 --csv");

    std::istringstream lines(ran.output);
    std::string line;
    std::getline(lines, line);
    int readings = 0;
    for (; std::getline(lines, line); ++readings) {
        if (line.find(",mettler-toledo,") != std::string::npos) {
            EXPECT_THAT(line, HasSubstr(",\"/dev/ttyS0\",weight,11.11,"));
        } else if (line.find(",mettler-xs,") != std::string::npos) {
            EXPECT_THAT(line, HasSubstr(",\"/dev/ttyUSB0\",weight,22.2200,"));
        } else {
            EXPECT_THAT(line, HasSubstr(",radwag,\"/dev/ttyUSB1\",weight,33.33"));
        }
    }
    EXPECT_GE(readings, 15);
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Bench, Doctor_finds_that_CTS_is_off_before_anything_is_sent_in_vain) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyUSB0").withLoad(3));
    balance.withLine([](simulator::HostLine& line) {
        dynamic_cast<simulator::VirtualLine&>(line).setInstrumentControlLines(TIOCM_DSR);
    });
    const Ran ran = Wbalance("doctor -d mettler-toledo -p 0 --usb -l 2400,7E1,rtscts");
    EXPECT_THAT(ran.output, HasSubstr("control lines  CTS off, DSR on, DCD off\n"
                                      "diagnosis      /dev/ttyUSB0: CTS is off, so nothing can be "
                                      "sent with rtscts; switch the balance on, use a cable that "
                                      "carries CTS, or leave rtscts out of --line\n"));
    EXPECT_EQ(ran.exitCode, 4);
}

TEST(Bench, Doctor_does_not_mind_CTS_where_nothing_waits_for_it) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyUSB0").withLoad(3));
    balance.withLine([](simulator::HostLine& line) {
        dynamic_cast<simulator::VirtualLine&>(line).setInstrumentControlLines(0);
    });
    const Ran ran = Wbalance("doctor -d mettler-toledo -p 0 --usb -t 0");
    EXPECT_THAT(ran.output, HasSubstr("control lines  CTS off, DSR off, DCD off\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

// The lock file of a port, as serial programs leave it while they have the port open.
class Lock {
 public:
    explicit Lock(pid_t holder) {
        const int file = open(kPath, O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const std::string text = std::to_string(holder) + "\nBench_test\n\n";
        EXPECT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(file);
    }
    ~Lock() { unlink(kPath); }

 private:
    static constexpr char kPath[] = "/var/lock/LCK..ttyUSB0";
};

TEST(Bench, Doctor_and_weigh_name_the_program_that_holds_the_port) {
    VirtualBench bench;
    bench.place("mettler-toledo", Options().on("/dev/ttyUSB0"));
    const Lock lock(getpid());
    const std::string holder = "Bench_test (process " + std::to_string(getpid()) + ")";

    const Ran examined = Wbalance("doctor -d mettler-toledo -p 0 --usb");
    EXPECT_THAT(examined.output, HasSubstr("diagnosis      /dev/ttyUSB0 is held by " + holder +
                                           ": end that program first\n"));
    EXPECT_EQ(examined.exitCode, 3);

    const Ran weighed = Wbalance("weigh -d mettler-toledo -p 0 --usb");
    EXPECT_EQ(weighed.errors, "wbalance: /dev/ttyUSB0: the port is in use; it is held by " +
                                  holder + ": end that program first\n");
    EXPECT_EQ(weighed.exitCode, 3);
}

TEST(Bench, The_lock_of_a_program_that_has_ended_holds_nothing) {
    VirtualBench bench;
    bench.place("mettler-toledo", Options().on("/dev/ttyUSB0").withLoad(3));
    const Ran ended = RunShell("echo $$");
    const Lock lock(std::stoi(ended.output));
    EXPECT_EQ(Wbalance("weigh -d mettler-toledo -p 0 --usb -t 0").output, "3.00 g\n");
}

bool IsLocked() {
    return access("/var/lock/LCK..ttyS0", F_OK) == 0;
}

TEST(Bench, No_lock_file_is_left_behind_by_a_weighing) {
    VirtualBench bench;
    bench.place("mettler-toledo", Options().on("/dev/ttyS0").withLoad(10));
    EXPECT_EQ(Wbalance("weigh -d mettler-toledo -t 0").output, "10.00 g\n");
    EXPECT_FALSE(IsLocked());
}

TEST(Bench, No_lock_file_is_left_behind_by_a_weighing_that_is_interrupted) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyS0"));
    balance.addFault("silent");
    bool wasLocked = false;
    std::thread look([&wasLocked] {
        for (int i = 0; i < 300 && !wasLocked; ++i) {
            wasLocked = IsLocked();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    EXPECT_EQ(RunShell("timeout --preserve-status -s INT 3 env " WBALANCE
                       " weigh -d mettler-toledo -t 60")
                  .exitCode,
              130);
    look.join();
    EXPECT_TRUE(wasLocked);
    EXPECT_FALSE(IsLocked());
}

TEST(Bench, A_balance_that_has_fallen_silent_does_not_give_its_old_weight) {
    VirtualBench bench;
    auto& balance = bench.place("mettler-toledo", Options().on("/dev/ttyS0").withLoad(10));
    EXPECT_EQ(Wbalance("weigh -d mettler-toledo -t 0").output, "10.00 g\n");
    balance.addFault("silent");
    EXPECT_EQ(Wbalance("weigh -d mettler-toledo -t 0").output, "");
}

}  // namespace
