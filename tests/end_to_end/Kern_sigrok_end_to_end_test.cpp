// The simulated Kern balance as a client reads it that has nothing to do with this project:
// Debian's sigrok-cli, whose driver was written for the balance itself. Skipped where sigrok-cli is
// missing, and where the system has no serial port, because sigrok-cli takes only one that is
// listed and there.

#include <gtest/gtest.h>
#include <wbalance/WbalanceKern_EW_EGN_EWB.h>
#include <wbalance/WithLineReadiness.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

std::string OutputOf(const std::string& command) {
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    ::pclose(pipe);
    return output;
}

class KernReadBySigrok : public testing::Test {
 protected:
    void SetUp() override {
        if (std::system("command -v sigrok-cli >/dev/null") != 0)
            GTEST_SKIP() << "sigrok-cli is not installed (apt-get install sigrok-cli)";
    }

    simulator::ConnectedInstrument& Have(Options options) {
        return bench_.Place("kern", options.With("fill=zero"));
    }
    /// What sigrok-cli prints of two readings.
    std::string Readings() const {
        return OutputOf("LD_PRELOAD=" VIRTUAL_LINE
                        " timeout 60 sigrok-cli --driver kern-ew-6200-2nm:conn=/dev/ttyS0"
                        " --samples 2");
    }
    /// This project's driver on the same port.
    struct Driver : WithLineReadiness<WbalanceKern_EW_EGN_EWB> {
        Driver() { SetCommPort(0); }
    };

 private:
    VirtualBench bench_;
};

}  // namespace

TEST_F(KernReadBySigrok, A_stable_weight) {
    auto& balance = Have(Options().WithLoad(12.5));
    EXPECT_EQ(Readings(), "Mass: 12.50 g\nMass: 12.50 g\n");
    EXPECT_EQ(balance.SentByHost(), "O1\r\nO1\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("1200,8N2"));
}

TEST_F(KernReadBySigrok, An_unstable_weight) {
    Have(Options().WithLoad(12.5).WithFault("busy"));
    EXPECT_EQ(Readings(), "Mass: 12.50 g UNSTABLE\nMass: 12.50 g UNSTABLE\n");
}

TEST_F(KernReadBySigrok, A_negative_weight) {
    Have(Options().WithLoad(-3.25));
    EXPECT_EQ(Readings(), "Mass: -3.25 g\nMass: -3.25 g\n");
}

TEST_F(KernReadBySigrok, A_weight_of_seven_digits) {
    Have(Options().WithLoad(12.345).With("digits=7").With("readability=0.001"));
    EXPECT_EQ(Readings(), "Mass: 12.345 g\nMass: 12.345 g\n");
}

TEST_F(KernReadBySigrok, An_overloaded_balance) {
    Have(Options().WithLoad(700));
    EXPECT_EQ(Readings(), "Mass: inf g\nMass: inf g\n");
}

TEST_F(KernReadBySigrok, What_this_projects_driver_has_tared_and_weighed) {
    auto& balance = Have(Options().WithLoad(12.5).With("settling=1ms"));
    double weight = -1;
    EXPECT_EQ(Driver().Tare(), 1);
    EXPECT_EQ(Readings(), "Mass: 0.00 g\nMass: 0.00 g\n");
    balance.SetLoad(5);
    EXPECT_EQ(Driver().Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, -7.5);
    EXPECT_EQ(Readings(), "Mass: -7.50 g\nMass: -7.50 g\n");
}
