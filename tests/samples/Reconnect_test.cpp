// The sample docs/samples/reconnect.cpp with an adapter that is pulled, silent, and back.

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "simulator/VirtualBench.h"

using simulator::ConnectedInstrument;
using simulator::Options;
using simulator::VirtualBench;

namespace {

/// The sample in a process of its own; what it says on standard error can be read line by line.
class Reconnect {
 public:
    explicit Reconnect(const std::string& stableName) {
        int ends[2];
        if (pipe(ends) != 0) throw std::system_error(errno, std::generic_category());
        child_ = fork();
        if (child_ == 0) {
            dup2(ends[1], STDERR_FILENO);
            std::freopen("/dev/null", "w", stdout);
            setenv("LD_PRELOAD", VIRTUAL_LINE, 1);
            execl(RECONNECT, RECONNECT, stableName.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        said_ = fdopen(ends[0], "r");
    }
    ~Reconnect() {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        std::fclose(said_);
    }
    Reconnect(const Reconnect&) = delete;
    Reconnect& operator=(const Reconnect&) = delete;

    /// The next line that differs from the one before.
    std::string Says() {
        std::string line = last_;
        while (line == last_)
            line = NextLine();
        return last_ = line;
    }

 private:
    std::string NextLine() {
        char line[200];
        if (std::fgets(line, sizeof line, said_) == nullptr) return "it has ended";
        return std::string(line, std::strcspn(line, "\n"));
    }

    pid_t child_ = -1;
    FILE* said_ = nullptr;
    std::string last_;
};

class ReconnectSample : public testing::Test {
 protected:
    ~ReconnectSample() override { std::filesystem::remove(stableName_); }

    /// Where the stable name leads, as udev writes it.
    void PointTo(const std::string& device) {
        std::filesystem::remove(stableName_);
        std::filesystem::create_symlink("../../" + device, stableName_);
    }

    /// It is there before the sample begins.
    std::string StableNameOf(const std::string& device) {
        const std::string name =
            testing::TempDir() + "usb-FTDI_A1B2-if00-port0." + std::to_string(getpid());
        std::filesystem::create_symlink("../../" + device, name);
        return name;
    }

    const std::string stableName_ = StableNameOf("ttyUSB3");
    VirtualBench bench_;
    ConnectedInstrument& balance_ =
        bench_.Place("sartorius", Options().On("/dev/ttyUSB3").WithLoad(12.34));
    Reconnect host_{stableName_};
};

// The first line is a weight: what Qt would say of the thread is kept away.
TEST_F(ReconnectSample, Weighs_again_after_each_of_three_unplugs) {
    ASSERT_EQ(host_.Says(), "12.34 g");
    for (int i = 0; i < 3; ++i) {
        balance_.Unplug();
        ASSERT_EQ(host_.Says(), "lost");
        balance_.PlugIn();
        std::string next = host_.Says();
        if (next == "away") next = host_.Says();
        ASSERT_EQ(next, "12.34 g");
    }
}

TEST_F(ReconnectSample, Finds_an_adapter_that_is_back_under_another_number) {
    ASSERT_EQ(host_.Says(), "12.34 g");
    balance_.Unplug();
    ASSERT_EQ(host_.Says(), "lost");
    ASSERT_EQ(host_.Says(), "away");
    balance_.PlugIn("/dev/ttyUSB5");
    PointTo("ttyUSB5");
    ASSERT_EQ(host_.Says(), "12.34 g");
}

TEST_F(ReconnectSample, Calls_a_balance_that_does_not_answer_silent_and_not_lost) {
    ASSERT_EQ(host_.Says(), "12.34 g");
    balance_.AddFault("silent");
    ASSERT_EQ(host_.Says(), "silent");
    balance_.ClearFaults();
    ASSERT_EQ(host_.Says(), "12.34 g");
}

}  // namespace
