// What a host finds behind its descriptors and paths while lines, terminals and servers come and
// go: mappings of lines are kept in the host's process and must never stand for something else.

#include "simulator/line/ServedLine.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include "Examples.h"
#include "simulator/VirtualBench.h"
#include "simulator/line/PseudoTerminal.h"
#include "simulator/line/VirtualLine.h"

using examples::kBalanceAt8N1;
using simulator::Options;
using simulator::PseudoTerminal;
using simulator::VirtualBench;
using simulator::VirtualLine;

namespace {

int OpenPort(const std::string& device) {
    return ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
}

/// Sets 7 data bits with even parity; whether they are taken, as by a port and not by a terminal.
bool Set7E1(int descriptor) {
    termios settings = {};
    if (::tcgetattr(descriptor, &settings) != 0) return false;
    settings.c_cflag = (settings.c_cflag & ~tcflag_t{CSIZE | PARODD}) | CS7 | PARENB;
    if (::tcsetattr(descriptor, TCSANOW, &settings) != 0) return false;
    termios found = {};
    return ::tcgetattr(descriptor, &found) == 0 && (found.c_cflag & CSIZE) == CS7;
}

bool Set7E1At(const std::string& device) {
    const int descriptor = OpenPort(device);
    const bool taken = descriptor >= 0 && Set7E1(descriptor);
    ::close(descriptor);
    return taken;
}

int ErrnoOf(int result) {
    return result == 0 ? 0 : errno;
}

dev_t TerminalNumber(int descriptor) {
    struct stat node = {};
    ::fstat(descriptor, &node);
    return node.st_rdev;
}

/// A directory of lines without a bench, for lines that are served by hand.
class Lines {
 public:
    Lines() {
        ::mkdtemp(directory_.data());
        ::setenv(simulator::kVirtualLinesVariable, directory_.c_str(), 1);
    }
    ~Lines() {
        ::unsetenv(simulator::kVirtualLinesVariable);
        std::filesystem::remove_all(directory_);
    }
    const std::string& Directory() const { return directory_; }
    void Clear() const {
        for (const auto& file : std::filesystem::directory_iterator(directory_))
            std::filesystem::remove_all(file);
    }

 private:
    std::string directory_ = simulator::BenchDirectory::Places().front() / "served-lines-XXXXXX";
};

void ServeUntil(VirtualLine& line, const std::atomic<bool>& stopping) {
    while (!stopping) {
        std::vector<pollfd> polled;
        for (const int descriptor : line.Descriptors())
            polled.push_back({descriptor, POLLIN, 0});
        ::poll(polled.data(), polled.size(), 10);
        line.Serve([](const VirtualLine::Arrival&) {});
    }
}

/// Serves one line by a thread of this process.
class ServingThread {
 public:
    explicit ServingThread(const Lines& lines, const char* device)
        : line_(lines.Directory(), device), thread_([this] { ServeUntil(line_, stopping_); }) {}
    ~ServingThread() {
        stopping_ = true;
        thread_.join();
    }
    std::string HostSettings() const { return line_.HostSettings().Text(); }

 private:
    VirtualLine line_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

/// Serves one line by a process, which can be killed.
class ServingProcess {
 public:
    ServingProcess(const Lines& lines, const char* device) {
        int ready[2] = {};
        if (::pipe(ready) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            VirtualLine line(lines.Directory(), device);
            if (::write(ready[1], "!", 1) == 1) ServeUntil(line, false);
            ::_exit(1);
        }
        char sign = 0;
        EXPECT_EQ(::read(ready[0], &sign, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~ServingProcess() { Kill(); }
    void Kill() {
        if (process_ < 0) return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }

 private:
    pid_t process_ = -1;
};

}  // namespace

TEST(ServedLine, A_terminal_that_gets_the_number_of_an_unplugged_line_is_a_plain_terminal) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    int sameNumbers = 0;
    // Another program may take the number; the terminals may be of the same age, or not.
    for (int round = 0; round < 500 && sameNumbers < 20; ++round) {
        const int port = OpenPort("/dev/ttyUSB0");
        const dev_t number = TerminalNumber(port);
        EXPECT_TRUE(Set7E1(port));
        ::close(port);
        balance.Unplug();
        {
            const PseudoTerminal other;
            const int descriptor = OpenPort(other.Path());
            if (TerminalNumber(descriptor) == number) ++sameNumbers;
            EXPECT_FALSE(Set7E1(descriptor));
            ::close(descriptor);
        }
        balance.PlugIn();
    }
    EXPECT_EQ(sameNumbers, 20);
}

TEST(ServedLine, A_terminal_with_the_number_that_a_line_had_stays_plain_when_the_line_is_back) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    EXPECT_TRUE(Set7E1At("/dev/ttyUSB0"));
    balance.Unplug();
    const PseudoTerminal other;
    const int descriptor = OpenPort(other.Path());
    balance.PlugIn();
    EXPECT_FALSE(Set7E1(descriptor));
    EXPECT_EQ(balance.HostSettings().Text(), "9600,8N1");
    ::close(descriptor);
}

TEST(ServedLine, Lines_that_exchange_their_terminals_numbers_are_not_confused) {
    VirtualBench bench;
    auto& first = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    auto& second = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB1"));
    for (int round = 0; round < 20; ++round) {
        EXPECT_TRUE(Set7E1At("/dev/ttyUSB0"));
        EXPECT_TRUE(Set7E1At("/dev/ttyUSB1"));
        first.Unplug();
        second.Unplug();
        second.PlugIn();
        first.PlugIn();
        EXPECT_TRUE(Set7E1At("/dev/ttyUSB1"));
        EXPECT_EQ(first.HostSettings().Text(), "9600,8N1");
        EXPECT_EQ(second.HostSettings().Text(), "9600,7E1");
    }
}

TEST(ServedLine, Of_benches_that_follow_each_other_each_is_met_by_its_own_hosts) {
    for (int round = 0; round < 20; ++round) {
        VirtualBench bench;
        auto& balance = bench.Place(kBalanceAt8N1);
        EXPECT_EQ(balance.HostSettings().Text(), "9600,8N1");
        EXPECT_TRUE(Set7E1At("/dev/ttyS0"));
        EXPECT_EQ(balance.HostSettings().Text(), "9600,7E1");
    }
}

TEST(ServedLine, A_descriptor_number_that_is_used_again_stands_for_its_new_port) {
    VirtualBench bench;
    auto& first = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyS0"));
    auto& second = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyS1"));
    const int port = OpenPort("/dev/ttyS0");
    EXPECT_TRUE(Set7E1(port));
    const int other = OpenPort("/dev/ttyS1");
    ASSERT_EQ(::dup2(other, port), port);
    ::close(other);
    termios settings = {};
    ASSERT_EQ(::tcgetattr(port, &settings), 0);
    ::cfsetspeed(&settings, B1200);
    EXPECT_EQ(::tcsetattr(port, TCSANOW, &settings), 0);
    EXPECT_EQ(first.HostSettings().Text(), "9600,7E1");
    EXPECT_EQ(second.HostSettings().Text(), "1200,8N1");
    ::close(port);
}

TEST(ServedLine, A_forked_child_goes_on_with_the_port_of_its_parent) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    const int port = OpenPort("/dev/ttyS0");
    termios settings = {};
    EXPECT_EQ(::tcgetattr(port, &settings), 0);
    const pid_t child = ::fork();
    if (child == 0) ::_exit(Set7E1(port) ? 0 : 1);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(balance.HostSettings().Text(), "9600,7E1");
    EXPECT_EQ(::tcgetattr(port, &settings), 0);
    EXPECT_EQ(settings.c_cflag & CSIZE, tcflag_t{CS7});
    ::close(port);
}

TEST(ServedLine, Threads_that_meet_their_lines_at_the_same_time_get_each_its_own) {
    constexpr int count = 16;
    VirtualBench bench;
    for (int i = 0; i < count; ++i)
        bench.Place(kBalanceAt8N1, Options().On("/dev/ttyS" + std::to_string(i)));
    std::atomic<bool> starting{false};
    std::atomic<int> taken{0};
    std::vector<std::thread> hosts;
    for (int i = 0; i < count; ++i)
        hosts.emplace_back([&, i] {
            while (!starting)
                std::this_thread::yield();
            if (Set7E1At("/dev/ttyS" + std::to_string(i / 2 * 2))) ++taken;
        });
    starting = true;
    for (std::thread& host : hosts)
        host.join();
    EXPECT_EQ(taken, count);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(bench.Instruments()[static_cast<std::size_t>(i)]->HostSettings().Text(),
                  i % 2 == 0 ? "9600,7E1" : "9600,8N1");
}

TEST(ServedLine, After_its_server_was_killed_every_request_at_an_open_port_fails) {
    const Lines lines;
    ServingProcess server(lines, "/dev/ttyS0");
    const int port = OpenPort("/dev/ttyS0");
    ASSERT_TRUE(Set7E1(port));
    server.Kill();
    termios settings = {};
    EXPECT_EQ(ErrnoOf(::tcgetattr(port, &settings)), EIO);
    EXPECT_EQ(ErrnoOf(::tcsetattr(port, TCSANOW, &settings)), EIO);
    EXPECT_EQ(ErrnoOf(::tcsendbreak(port, 0)), EIO);
    for (const unsigned request :
         std::initializer_list<unsigned>{TIOCEXCL, TIOCNXCL, TIOCMGET, TIOCMSET, TIOCMBIS, TIOCMBIC,
                                         TIOCSBRK, TIOCCBRK, FIONREAD, TCFLSH, TCGETS, TCSETS})
        EXPECT_EQ(ErrnoOf(::ioctl(port, request, &settings)), EIO) << request;
    ::close(port);
}

TEST(ServedLine, A_server_that_takes_the_place_of_a_killed_one_is_met_by_its_hosts) {
    const Lines lines;
    for (int round = 0; round < 30; ++round) {
        ServingProcess killed(lines, "/dev/ttyS0");
        ASSERT_TRUE(Set7E1At("/dev/ttyS0"));
        killed.Kill();
        lines.Clear();
        const ServingThread server(lines, "/dev/ttyS0");
        EXPECT_EQ(server.HostSettings(), "9600,8N1");
        EXPECT_TRUE(Set7E1At("/dev/ttyS0"));
        EXPECT_EQ(server.HostSettings(), "9600,7E1");
    }
}

TEST(ServedLine, A_terminal_whose_node_was_changed_is_still_the_line) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    const int port = OpenPort("/dev/ttyS0");
    ASSERT_EQ(::fchmod(port, 0620), 0);
    EXPECT_TRUE(Set7E1(port));
    EXPECT_EQ(balance.HostSettings().Text(), "9600,7E1");
    ::close(port);
}

TEST(ServedLine, A_file_that_is_only_being_created_is_no_line_yet) {
    const Lines lines;
    ::close(::open((lines.Directory() + "/ttyUSB4711").c_str(), O_RDWR | O_CREAT, 0666));
    EXPECT_EQ(ErrnoOf(::access("/dev/ttyUSB4711", F_OK)), ENOENT);
}

TEST(ServedLine, A_host_that_has_met_more_lines_than_it_keeps_meets_further_ones) {
    {
        const Lines lines;
        struct stat node = {};
        for (int i = 0; i < 2100; ++i) {
            const std::string device = "/dev/ttyUSB" + std::to_string(i);
            const VirtualLine line(lines.Directory(), device);
            ASSERT_EQ(::stat(device.c_str(), &node), 0);
        }
    }
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    EXPECT_TRUE(Set7E1At("/dev/ttyS0"));
    EXPECT_EQ(balance.HostSettings().Text(), "9600,7E1");
    balance.Unplug();
    EXPECT_FALSE(Set7E1At("/dev/ttyS0"));
}
