// Instruments in real time, on virtual lines in this very process.

#include "simulator/VirtualBench.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <QtSerialPort/QSerialPort>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "AllDescriptors.h"
#include "Examples.h"
#include "simulator/line/VirtualLine.h"

using examples::kBalance;
using examples::kBalanceAt8N1;
using examples::kOtherBalance;
using simulator::BalanceModel;
using simulator::Change;
using simulator::ConnectedInstrument;
using simulator::HostLine;
using simulator::LineEvent;
using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;
using simulator::VirtualLine;
using namespace std::chrono_literals;

namespace {

/// A host's port at 9600,8N1, which is what kBalanceAt8N1 speaks.
class OpenPort {
 public:
    explicit OpenPort(const char* device = "/dev/ttyS0") : port_(QString(device)) {
        EXPECT_TRUE(port_.open(QIODevice::ReadWrite)) << port_.errorString().toStdString();
    }
    std::string Ask(const char* command, int patience = 20000) {
        port_.write(command);
        QByteArray answer;
        while (!answer.endsWith('\n') && port_.waitForReadyRead(patience))
            answer += port_.readAll();
        return answer.toStdString();
    }
    QSerialPort* operator->() { return &port_; }

 private:
    QSerialPort port_;
};

void Work(ConnectedInstrument& instrument, const std::function<void(VirtualLine&)>& work) {
    instrument.WithLine([&](HostLine& line) { work(dynamic_cast<VirtualLine&>(line)); });
}

int OpenErrno(const char* device) {
    const int descriptor = ::open(device, O_RDWR | O_NOCTTY);
    if (descriptor >= 0) ::close(descriptor);
    return descriptor >= 0 ? 0 : errno;
}

/// Waits for what another thread is about to do; the tests' only clock is this generous limit.
bool Eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 500 && !condition(); ++i)
        std::this_thread::sleep_for(10ms);
    return condition();
}

std::size_t OpenDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// A file system of 32 KiB.
class FullPlace {
 public:
    FullPlace() {
        EXPECT_NE(::mkdtemp(path_), nullptr);
        isThere_ = ::mount("tmpfs", path_, "tmpfs", 0, "size=32k") == 0;
    }
    ~FullPlace() {
        if (isThere_) ::umount(path_);
        ::rmdir(path_);
    }
    FullPlace(const FullPlace&) = delete;
    FullPlace& operator=(const FullPlace&) = delete;

    bool IsThere() const { return isThere_; }
    std::filesystem::path Path() const { return path_; }

 private:
    char path_[32] = "/tmp/wbalance-test-XXXXXX";
    bool isThere_ = false;
};

}  // namespace

TEST(VirtualBench, The_load_can_change_while_the_host_looks_on) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    OpenPort port;
    EXPECT_EQ(port.Ask("S\r\n"), "S S     1.0000 g\r\n");
    balance.SetLoad(2);
    EXPECT_EQ(port.Ask("S\r\n"), "S S     2.0000 g\r\n");
}

TEST(VirtualBench, Several_instruments_stand_side_by_side) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    bench.Place(kBalanceAt8N1, Options().WithLoad(2).On("/dev/ttyUSB0"));
    bench.Place(kBalanceAt8N1, Options().WithLoad(3).On("/dev/ttyUSB12"));
    OpenPort first("/dev/ttyUSB0");
    OpenPort second("/dev/ttyUSB12");
    OpenPort third;
    EXPECT_EQ(first.Ask("S\r\n"), "S S     2.0000 g\r\n");
    EXPECT_EQ(second.Ask("S\r\n"), "S S     3.0000 g\r\n");
    EXPECT_EQ(third.Ask("S\r\n"), "S S     1.0000 g\r\n");
}

TEST(VirtualBench, Only_serial_ports_can_be_served) {
    VirtualBench bench;
    EXPECT_THROW(bench.Place(kBalanceAt8N1, Options().On("/dev/null")), std::invalid_argument);
    EXPECT_THROW(bench.Place(kBalanceAt8N1, Options().On("/dev/ttyS")), std::invalid_argument);
    EXPECT_THROW(bench.Place("unknown"), std::invalid_argument);
}

TEST(VirtualBench, A_device_has_gone_with_its_bench) {
    { VirtualBench().Place(kBalanceAt8N1, Options().On("/dev/ttyUSB4711")); }
    EXPECT_EQ(OpenErrno("/dev/ttyUSB4711"), ENOENT);
}

TEST(VirtualBench, Its_directory_is_where_TMPDIR_says_and_goes_with_it) {
    const std::filesystem::path chosen = VirtualBench().Directory().string() + "-chosen";
    std::filesystem::create_directory(chosen);
    ::setenv("TMPDIR", chosen.c_str(), 1);
    {
        const VirtualBench bench;
        EXPECT_EQ(bench.Directory().parent_path(), chosen);
    }
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(std::filesystem::remove(chosen)) << "is left as it was found, empty";
}

TEST(VirtualBench, The_log_tells_who_sent_what_at_which_settings) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    EXPECT_FALSE(balance.SettingsOfLastCommand());
    OpenPort port;
    port.Ask("S\r\n");
    const auto log = balance.Log();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].kind, LineEvent::Kind::FromHost);
    EXPECT_EQ(log[0].bytes, "S\r\n");
    EXPECT_EQ(log[0].settings.Text(), "9600,8N1");
    EXPECT_EQ(log[1].kind, LineEvent::Kind::FromInstrument);
    EXPECT_EQ(log[1].bytes, "S S     1.0000 g\r\n");
    EXPECT_EQ(balance.SettingsOfLastCommand(), UartSettings::Parse("9600,8N1"));
    balance.ClearLog();
    EXPECT_TRUE(balance.Log().empty());
}

TEST(VirtualBench, Bytes_sent_before_a_change_of_settings_belong_to_the_settings_before) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    OpenPort port;
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(port->setBaudRate(9600));
        port->write("SI\r\n");
        ASSERT_TRUE(port->waitForBytesWritten(1000));
        ASSERT_TRUE(port->setBaudRate(1200));
    }
    std::string expected;
    for (int i = 0; i < 50; ++i)
        expected += "SI\r\n";
    EXPECT_EQ(balance.SentByHost(), expected);
    const auto log = balance.Log();
    EXPECT_TRUE(std::all_of(log.begin(), log.end(), [](const LineEvent& event) {
        return event.kind != LineEvent::Kind::FromHost || event.settings.baudRate == 9600;
    }));
}

TEST(VirtualBench, A_command_of_wrong_parity_gets_ET_at_the_instruments_settings) {
    VirtualBench bench;
    bench.Place(kBalance);
    OpenPort port;
    ASSERT_TRUE(port->setBaudRate(2400));
    ASSERT_TRUE(port->setDataBits(QSerialPort::Data7));
    ASSERT_TRUE(port->setParity(QSerialPort::OddParity));
    EXPECT_EQ(port.Ask("SI\r\n"), "ET\r\n");
}

TEST(VirtualBench, An_instrument_at_another_baud_rate_does_not_understand) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1).At("2400,8N1"));
    OpenPort port;
    EXPECT_EQ(port.Ask("S\r\n", 300).find("S S"), std::string::npos);
    EXPECT_EQ(balance.SentByHost(), "S\r\n");
}

TEST(VirtualBench, What_is_sent_to_a_closed_port_is_lost) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().With("repeat-interval=20ms"));
    { OpenPort().Ask("SIR\r\n"); }
    ASSERT_TRUE(Eventually([&] { return !balance.IsOpenedByHost(); }));
    balance.ClearLog();
    ASSERT_TRUE(Eventually([&] { return balance.Log().size() > 3; }));
    for (const LineEvent& event : balance.Log())
        EXPECT_EQ(event.kind, LineEvent::Kind::Lost);
}

TEST(VirtualBench, Answers_that_were_not_read_are_gone_when_the_port_is_opened_again) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    const int first = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    ASSERT_EQ(::write(first, "I4\r\n", 4), 4);
    ASSERT_TRUE(Eventually([&] { return !balance.SentByInstrument().empty(); }));
    ::close(first);
    ASSERT_TRUE(Eventually([&] { return !balance.IsOpenedByHost(); }));
    EXPECT_EQ(OpenPort().Ask("S\r\n"), "S S     1.0000 g\r\n");
}

TEST(VirtualBench, Paced_characters_take_their_time_on_the_line) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithPacing().At("600,7E1"));
    OpenPort port;
    port->setBaudRate(600);
    port->setDataBits(QSerialPort::Data7);
    port->setParity(QSerialPort::EvenParity);
    balance.ClearLog();
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(port.Ask("S\r\n"), "S S     0.0000 g\r\n");
    const auto passed = std::chrono::steady_clock::now() - before;
    // 3 characters there and 18 back, 10 bits each: 350 ms. No upper limit: the machine may be
    // slow.
    EXPECT_GE(passed, 349ms);
    EXPECT_GE(balance.Log().back().time - balance.Log().front().time, 49ms);
}

TEST(VirtualBench, A_command_that_an_onlooker_takes_over_is_answered_when_it_is_due) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1).WithPacing().At("115200,8N1"));
    OpenPort port;
    ASSERT_TRUE(port->setBaudRate(115200));
    for (int i = 0; i < 100; ++i) {
        port->write("S\r\n");
        ASSERT_TRUE(port->waitForBytesWritten(20000));
        balance.Log();  // it may be faster than the thread that serves the line
        ASSERT_EQ(port.Ask(""), "S S     1.0000 g\r\n");
    }
}

TEST(VirtualBench, Of_a_hundred_instruments_each_answers_for_itself) {
    VirtualBench bench;
    for (int i = 0; i < 100; ++i)
        bench.Place(kBalanceAt8N1, Options().WithLoad(i + 1).On("/dev/ttyS" + std::to_string(i)));
    for (int i = 99; i >= 0; --i) {
        char expected[32];
        std::snprintf(expected, sizeof expected, "S S %10.4f g\r\n", i + 1.0);
        const std::string device = "/dev/ttyS" + std::to_string(i);
        EXPECT_EQ(OpenPort(device.c_str()).Ask("S\r\n"), expected);
    }
}

TEST(VirtualBench, Unplugged_the_open_port_is_hung_up_and_the_node_is_gone) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    OpenPort port("/dev/ttyUSB0");
    EXPECT_EQ(port.Ask("S\r\n"), "S S     1.0000 g\r\n");
    balance.Unplug();
    EXPECT_FALSE(port->waitForReadyRead(5000));
    EXPECT_FALSE(port->clear());
    EXPECT_FALSE(port->setBaudRate(2400));
    struct stat node = {};
    EXPECT_EQ(::stat("/dev/ttyUSB0", &node), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(OpenErrno("/dev/ttyUSB0"), ENOENT);
}

TEST(VirtualBench, At_an_unplugged_port_reads_end_writes_fail_and_poll_says_so) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    const int port = ::open("/dev/ttyUSB0", O_RDWR | O_NOCTTY);
    ASSERT_GE(port, 0);
    char byte = 0;
    ssize_t readByWaiting = -1;
    std::thread waiting([&] { readByWaiting = ::read(port, &byte, 1); });
    balance.Unplug();
    waiting.join();
    EXPECT_LE(readByWaiting, 0) << "the end, or EIO where it waited at that very moment";
    EXPECT_EQ(::read(port, &byte, 1), 0);
    EXPECT_EQ(::write(port, "S", 1), -1);
    EXPECT_EQ(errno, EIO);
    pollfd polled = {port, POLLIN | POLLOUT, 0};
    EXPECT_EQ(::poll(&polled, 1, 5000), 1);
    EXPECT_EQ(polled.revents, POLLIN | POLLOUT | POLLERR | POLLHUP);
    int lines = 0;
    EXPECT_EQ(::ioctl(port, TIOCMGET, &lines), -1);
    EXPECT_EQ(errno, EIO);
    ::close(port);
}

TEST(VirtualBench, Plugged_in_again_it_is_a_new_port_and_the_old_one_stays_dead) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    OpenPort old("/dev/ttyUSB0");
    old->setBaudRate(2400);
    balance.Unplug();
    balance.PlugIn();
    EXPECT_FALSE(old->setBaudRate(4800));
    EXPECT_EQ(balance.HostSettings().Text(), "9600,8N1");
    old->close();
    EXPECT_EQ(OpenPort("/dev/ttyUSB0").Ask("S\r\n"), "S S     1.0000 g\r\n");
}

TEST(VirtualBench, It_may_come_back_under_another_name) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    balance.Unplug();
    balance.PlugIn("/dev/ttyUSB1");
    EXPECT_EQ(balance.Device(), "/dev/ttyUSB1");
    EXPECT_EQ(OpenErrno("/dev/ttyUSB0"), ENOENT);
    EXPECT_EQ(OpenPort("/dev/ttyUSB1").Ask("S\r\n"), "S S     1.0000 g\r\n");
}

TEST(VirtualBench, The_fault_unplug_has_its_time_and_its_new_name) {
    VirtualBench bench;
    auto& balance = bench.Place(
        kBalanceAt8N1,
        Options().On("/dev/ttyUSB0").WithLoad(1).WithFault("unplug=/dev/ttyUSB1@200ms+300ms"));
    OpenPort port("/dev/ttyUSB0");
    EXPECT_FALSE(port->waitForReadyRead(5000));
    EXPECT_EQ(OpenErrno("/dev/ttyUSB0"), ENOENT);
    ASSERT_TRUE(Eventually([] { return OpenErrno("/dev/ttyUSB1") == 0; }));
    EXPECT_EQ(OpenPort("/dev/ttyUSB1").Ask("S\r\n"), "S S     1.0000 g\r\n");
    const auto log = balance.Log();
    const auto unplugged = std::find_if(log.begin(), log.end(), [](const LineEvent& event) {
        return event.kind == LineEvent::Kind::Unplugged;
    });
    ASSERT_NE(unplugged, log.end());
    EXPECT_EQ(unplugged->bytes, "/dev/ttyUSB0");
    EXPECT_GE(unplugged->time, 200ms);
}

TEST(VirtualBench, An_adapter_that_finds_no_descriptors_is_said_and_tried_again) {
    if (WBALANCE_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors itself";
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    balance.Unplug();
    {
        const AllDescriptors taken;
        EXPECT_THROW(balance.PlugIn("/dev/ttyUSB1"), std::runtime_error);
    }
    ASSERT_TRUE(Eventually([] { return OpenErrno("/dev/ttyUSB1") == 0; }));
    EXPECT_EQ(OpenPort("/dev/ttyUSB1").Ask("S\r\n"), "S S     1.0000 g\r\n");
    const auto log = balance.Log();
    const auto trouble = std::find_if(log.begin(), log.end(), [](const LineEvent& event) {
        return event.kind == LineEvent::Kind::Trouble;
    });
    ASSERT_NE(trouble, log.end());
    EXPECT_THAT(trouble->bytes,
                testing::MatchesRegex("/dev/ttyUSB1 can't be plugged in: .*Too many open files; it "
                                      "is tried again each second"));
}

TEST(VirtualBench, An_adapter_that_comes_back_by_itself_and_finds_no_descriptors_hurts_nobody) {
    if (WBALANCE_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors itself";
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    {
        const AllDescriptors taken;
        balance.Apply(Change::Parse("unplug for 100ms"));
        ASSERT_TRUE(
            Eventually([&] { return balance.Log().back().kind == LineEvent::Kind::Trouble; }));
    }
    ASSERT_TRUE(Eventually([] { return OpenErrno("/dev/ttyUSB0") == 0; }));
}

TEST(VirtualBench, Names_that_an_adapter_has_left_take_no_descriptors) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    const auto replug = [&](int number) {
        balance.Unplug();
        balance.PlugIn("/dev/ttyUSB" + std::to_string(number));
    };
    replug(1);
    const auto before = OpenDescriptors();
    for (int number = 2; number < 50; ++number)
        replug(number);
    EXPECT_EQ(OpenDescriptors(), before);
    replug(0);
    EXPECT_EQ(OpenPort("/dev/ttyUSB0").Ask("S\r\n"), "S S     1.0000 g\r\n");
    EXPECT_EQ(OpenErrno("/dev/ttyUSB49"), ENOENT);
}

TEST(VirtualBench, A_bench_that_gets_no_descriptors_leaves_nothing_behind) {
    if (WBALANCE_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors itself";
    char place[] = "/tmp/wbalance-test-XXXXXX";
    ::setenv("TMPDIR", ::mkdtemp(place), 1);
    {
        const AllDescriptors taken(1);  // but one, for what it does first
        EXPECT_THROW(VirtualBench(), std::system_error);
    }
    ::unsetenv("TMPDIR");
    EXPECT_EQ(::getenv("WBALANCE_VIRTUAL_LINES"), nullptr);
    EXPECT_TRUE(std::filesystem::remove(place)) << "is left as it was found, empty";
}

TEST(VirtualBench, A_place_without_room_is_said_and_leaves_nothing_behind) {
    const FullPlace place;
    if (!place.IsThere()) GTEST_SKIP() << "only root can make a small file system";
    ::setenv("TMPDIR", place.Path().c_str(), 1);
    {
        VirtualBench bench;
        std::ofstream(place.Path() / "filling") << std::string(100'000, 'x');
        EXPECT_THAT([&] { bench.Place(kBalanceAt8N1); },
                    testing::ThrowsMessage<std::system_error>(
                        testing::EndsWith("ttyS0: No space left on device")));
    }
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(std::filesystem::remove(place.Path() / "filling"));
    EXPECT_TRUE(std::filesystem::is_empty(place.Path()));
}

TEST(VirtualBench, An_open_can_be_refused_for_any_reason) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    for (const int error : {EACCES, EBUSY, ENODEV, EIO}) {
        Work(balance, [&](VirtualLine& line) { line.RefuseOpen(error); });
        EXPECT_EQ(OpenErrno("/dev/ttyS0"), error);
    }
    Work(balance, [](VirtualLine& line) { line.RefuseOpen(EACCES); });
    EXPECT_EQ(::access("/dev/ttyS0", F_OK), 0);
    EXPECT_EQ(::access("/dev/ttyS0", R_OK | W_OK), -1);
    Work(balance, [](VirtualLine& line) { line.RefuseOpen(0); });
    EXPECT_EQ(OpenErrno("/dev/ttyS0"), 0);
}

TEST(VirtualBench, The_next_open_alone_can_be_refused) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    Work(balance, [](VirtualLine& line) { line.RefuseNextOpen(EBUSY); });
    EXPECT_EQ(OpenErrno("/dev/ttyS0"), EBUSY);
    EXPECT_EQ(OpenErrno("/dev/ttyS0"), 0);
}

TEST(VirtualBench, A_node_without_a_port_opens_but_is_no_terminal) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    Work(balance, [](VirtualLine& line) { line.TakePortAway(); });
    const int node = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    ASSERT_GE(node, 0);
    EXPECT_EQ(::isatty(node), 0);
    ::close(node);
}

TEST(VirtualBench, Who_looks_at_what_a_process_has_open_sees_the_device) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    const int port = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    ASSERT_GE(port, 0);
    const std::string link = "/proc/self/fd/" + std::to_string(port);
    char target[64];
    ASSERT_EQ(::readlink(link.c_str(), target, sizeof target), 10);
    EXPECT_EQ(std::string(target, 10), "/dev/ttyS0");
    ::close(port);
    EXPECT_EQ(::readlink("/proc/self/fd/0/none", target, sizeof target), -1);
}

TEST(VirtualBench, The_node_has_the_owner_group_and_mode_that_it_is_given) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    Work(balance, [](VirtualLine& line) { line.SetNode({0600, 7, 8}); });
    struct stat node = {};
    ASSERT_EQ(::stat("/dev/ttyS0", &node), 0);
    EXPECT_TRUE(S_ISCHR(node.st_mode));
    EXPECT_EQ(node.st_mode & 07777u, 0600u);
    EXPECT_EQ(node.st_uid, 7u);
    EXPECT_EQ(node.st_gid, 8u);
}

TEST(VirtualBench, Control_lines_go_both_ways) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    unsigned seen = 0;
    const auto look = [&] {
        Work(balance, [&](VirtualLine& line) { seen = line.ControlLines(); });
    };
    OpenPort port;
    look();
    EXPECT_EQ(seen & (TIOCM_DTR | TIOCM_RTS), unsigned{TIOCM_DTR | TIOCM_RTS}) << "raised by open";
    EXPECT_TRUE(port->setDataTerminalReady(false));
    look();
    EXPECT_EQ(seen & (TIOCM_DTR | TIOCM_RTS), unsigned{TIOCM_RTS});
    EXPECT_TRUE(port->pinoutSignals() & QSerialPort::ClearToSendSignal);
    Work(balance, [](VirtualLine& line) { line.SetInstrumentControlLines(TIOCM_DSR); });
    EXPECT_FALSE(port->pinoutSignals() & QSerialPort::ClearToSendSignal);
    EXPECT_TRUE(port->pinoutSignals() & QSerialPort::DataSetReadySignal);
    port->close();
    ASSERT_TRUE(Eventually([&] { return look(), (seen & TIOCM_RTS) == 0; })) << "dropped by close";
}

TEST(VirtualBench, Each_control_line_of_the_instrument_is_seen_by_the_host) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    const int port = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    int seen = 0;
    EXPECT_EQ(::ioctl(port, TIOCMGET, &seen), 0);
    EXPECT_EQ(seen, TIOCM_DTR | TIOCM_RTS | TIOCM_CTS | TIOCM_DSR | TIOCM_CD);
    for (const int line : {TIOCM_CTS, TIOCM_DSR, TIOCM_CD, TIOCM_RI}) {
        Work(balance, [&](VirtualLine& each) {
            each.SetInstrumentControlLines(static_cast<unsigned>(line));
        });
        EXPECT_EQ(::ioctl(port, TIOCMGET, &seen), 0);
        EXPECT_EQ(seen, TIOCM_DTR | TIOCM_RTS | line);
    }
    const int instruments = TIOCM_CTS | TIOCM_DSR | TIOCM_CD;
    EXPECT_EQ(::ioctl(port, TIOCMSET, &instruments), 0) << "which only the instrument moves";
    EXPECT_EQ(::ioctl(port, TIOCMGET, &seen), 0);
    EXPECT_EQ(seen, TIOCM_RI);
    ::close(port);
}

TEST(VirtualBench, Who_has_the_port_for_himself_can_be_asked) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    const int port = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    const auto isExclusive = [&] {
        int exclusive = -1;
        EXPECT_EQ(::ioctl(port, TIOCGEXCL, &exclusive), 0);
        return exclusive;
    };
    EXPECT_EQ(isExclusive(), 0);
    EXPECT_EQ(::ioctl(port, TIOCEXCL), 0);
    EXPECT_EQ(isExclusive(), 1);
    EXPECT_EQ(::ioctl(port, TIOCNXCL), 0);
    EXPECT_EQ(isExclusive(), 0);
    ::close(port);
}

TEST(VirtualBench, A_lock_on_one_descriptor_keeps_others_of_the_port_from_locking) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    const int first = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    const int second = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    EXPECT_EQ(::flock(first, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(::flock(second, LOCK_EX | LOCK_NB), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    ::close(first);
    EXPECT_EQ(::flock(second, LOCK_EX | LOCK_NB), 0);
    ::close(second);
}

TEST(VirtualBench, Low_latency_can_be_asked_for_until_the_adapter_is_pulled) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    const int port = ::open("/dev/ttyUSB0", O_RDWR | O_NOCTTY);
    serial_struct parameters = {};
    ASSERT_EQ(::ioctl(port, TIOCGSERIAL, &parameters), 0);
    EXPECT_EQ(parameters.type, PORT_16550A);
    EXPECT_EQ(parameters.flags, 0);
    parameters.flags |= ASYNC_LOW_LATENCY;
    EXPECT_EQ(::ioctl(port, TIOCSSERIAL, &parameters), 0);
    parameters.flags = 0;
    EXPECT_EQ(::ioctl(port, TIOCGSERIAL, &parameters), 0);
    EXPECT_EQ(parameters.flags, ASYNC_LOW_LATENCY);
    balance.Unplug();
    EXPECT_EQ(::ioctl(port, TIOCGSERIAL, &parameters), -1);
    EXPECT_EQ(errno, EIO);
    ::close(port);
    balance.PlugIn();
    const int again = ::open("/dev/ttyUSB0", O_RDWR | O_NOCTTY);
    EXPECT_EQ(::ioctl(again, TIOCGSERIAL, &parameters), 0);
    EXPECT_EQ(parameters.flags, 0);
    ::close(again);
}

TEST(VirtualBench, A_break_reaches_the_instrument) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    const int descriptor = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(::tcsendbreak(descriptor, 0), 0);
    char answer[8] = {};
    EXPECT_EQ(::read(descriptor, answer, sizeof answer), 4);
    EXPECT_STREQ(answer, "ET\r\n");
    ::close(descriptor);
}

TEST(VirtualBench, A_break_that_is_held_until_it_is_ended_reaches_the_instrument_once) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().WithLoad(1));
    const int descriptor = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    EXPECT_EQ(::ioctl(descriptor, TIOCSBRK), 0);
    EXPECT_EQ(::ioctl(descriptor, TIOCCBRK), 0);
    EXPECT_EQ(::write(descriptor, "S\r\n", 3), 3);
    ASSERT_TRUE(Eventually([&] { return balance.SentByInstrument().size() >= 22; }));
    EXPECT_EQ(balance.SentByInstrument(), "ET\r\nS S     1.0000 g\r\n");
    ::close(descriptor);
}

TEST(VirtualBench, A_duplicated_descriptor_is_the_same_port) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1);
    const int first = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    const int second = ::dup(first);
    ::close(first);
    termios settings = {};
    ASSERT_EQ(::tcgetattr(second, &settings), 0);
    settings.c_cflag = (settings.c_cflag & ~tcflag_t{CSIZE}) | CS7 | PARENB | PARODD;
    ASSERT_EQ(::tcsetattr(second, TCSANOW, &settings), 0);
    EXPECT_EQ(balance.HostSettings().Text(), "9600,7O1");
    EXPECT_TRUE(balance.IsOpenedByHost());
    ::close(second);
    EXPECT_TRUE(Eventually([&] { return !balance.IsOpenedByHost(); }));
}

TEST(VirtualBench, Settings_outlive_a_close_as_on_a_real_port) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    const int first = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    termios settings = {};
    ::tcgetattr(first, &settings);
    settings.c_cflag |= CSTOPB;
    ::tcsetattr(first, TCSANOW, &settings);
    ::close(first);
    const int second = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
    termios found = {};
    ::tcgetattr(second, &found);
    EXPECT_TRUE(found.c_cflag & CSTOPB);
    ::close(second);
}

TEST(VirtualBench, Two_instruments_cannot_be_at_one_port) {
    VirtualBench bench;
    bench.Place(kBalanceAt8N1);
    try {
        bench.Place(kOtherBalance);
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(),
                     "an instrument is at /dev/ttyS0 already; give each its own port");
    }
}

TEST(VirtualBench, It_keeps_its_name_when_another_instrument_has_the_new_one) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB1").WithLoad(2));
    balance.Unplug();
    balance.PlugIn("/dev/ttyUSB1");
    EXPECT_EQ(balance.Device(), "/dev/ttyUSB0");
    EXPECT_EQ(OpenPort("/dev/ttyUSB0").Ask("S\r\n"), "S S     1.0000 g\r\n");
    EXPECT_EQ(OpenPort("/dev/ttyUSB1").Ask("S\r\n"), "S S     2.0000 g\r\n");
}

TEST(VirtualBench, A_script_is_carried_out_at_its_times) {
    std::istringstream text(
        "0s load 1\n"
        "0s switch serial-number=7777777\n"
        "0s fault silent for 200ms\n"
        "200ms load 2\n"
        "+1ms press tare\n");
    Options options;
    options.script = simulator::ReadScript(text, "bench.script");
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, options);
    OpenPort port;
    ASSERT_TRUE(Eventually([&] {
        double tare = 0;
        balance.WithBalance([&](BalanceModel& model) { tare = model.TareWeight(); });
        return tare == 2;
    }));
    EXPECT_EQ(port.Ask("S\r\n"), "S S     0.0000 g\r\n");
    EXPECT_EQ(port.Ask("I4\r\n"), "I4 A \"7777777\"\r\n");
}

TEST(VirtualBench, A_script_that_the_instrument_cannot_follow_is_refused_with_its_line) {
    std::istringstream text("0s load 1\n5s switch speed=2\n");
    Options options;
    options.script = simulator::ReadScript(text, "bench.script");
    VirtualBench bench;
    try {
        bench.Place(kBalanceAt8N1, options);
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_EQ(std::string(error.what()).find("bench.script:2: this instrument has no switch"),
                  0u);
    }
}

TEST(VirtualBench, What_a_host_sends_at_the_very_end_is_still_taken_over) {
    std::string sent;
    {
        VirtualBench bench;
        auto& balance = bench.Place(kBalanceAt8N1);
        balance.OnEvent([&](ConnectedInstrument&, const LineEvent& event) {
            if (event.kind == LineEvent::Kind::FromHost) sent += event.bytes;
        });
        const int descriptor = ::open("/dev/ttyS0", O_RDWR | O_NOCTTY);
        EXPECT_EQ(::write(descriptor, "S\r\n", 3), 3);
        ::close(descriptor);
    }
    EXPECT_EQ(sent, "S\r\n");
}

TEST(VirtualBench, An_adapter_may_be_pulled_for_no_time_at_all) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0"));
    balance.Apply(Change::Parse("unplug for 0s"));
    balance.Apply(Change::Parse("unplug for 1ms"));
    EXPECT_TRUE(Eventually([] { return OpenErrno("/dev/ttyUSB0") == 0; }));
}

TEST(VirtualBench, A_change_is_in_force_when_it_returns) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB0").WithLoad(1));
    balance.Apply(Change::Parse("unplug as ttyUSB1"));
    EXPECT_EQ(OpenErrno("/dev/ttyUSB0"), ENOENT);
    balance.Apply(Change::Parse("end unplug"));
    EXPECT_EQ(OpenErrno("/dev/ttyUSB1"), 0);
    OpenPort port("/dev/ttyUSB1");
    balance.Apply(Change::Parse("fault overload"));
    EXPECT_EQ(port.Ask("SI\r\n"), "S +\r\n");
    balance.Apply(Change::Parse("end"));
    EXPECT_EQ(port.Ask("SI\r\n"), "S S     1.0000 g\r\n");
    EXPECT_THROW(balance.Apply(Change::Parse("switch speed=2")), std::invalid_argument);
    balance.Apply(Change::Parse("press print"));
    EXPECT_EQ(port.Ask(""), "S S     1.0000 g\r\n");
}

TEST(VirtualBench, An_unplugged_terminal_comes_back_under_another_path) {
    VirtualBench bench;
    auto& balance = bench.PlaceOnTerminal(kBalanceAt8N1, Options().WithLoad(1));
    const std::string before = balance.Device();
    const int old = ::open(before.c_str(), O_RDWR | O_NOCTTY);
    balance.Unplug();
    EXPECT_EQ(balance.Device(), before);
    balance.PlugIn();
    EXPECT_NE(balance.Device(), before) << "held by the old host";
    const int descriptor = ::open(balance.Device().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::write(descriptor, "S\r\n", 3), 3);
    char answer[64] = {};
    EXPECT_EQ(::read(descriptor, answer, sizeof answer), 18);
    ::close(descriptor);
    ::close(old);
}

TEST(VirtualBench, A_bare_pseudo_terminal_takes_7_bits_and_parity_each_time_with_the_speed) {
    VirtualBench bench;
    auto& balance = bench.PlaceOnTerminal(kBalance, Options().WithLoad(5));
    for (int round = 0; round < 20; ++round) {
        const int descriptor = ::open(balance.Device().c_str(), O_RDWR | O_NOCTTY);
        ASSERT_GE(descriptor, 0);
        for (int time = 0; time < 2; ++time) {
            termios settings = {};
            ASSERT_EQ(::tcgetattr(descriptor, &settings), 0);
            ::cfmakeraw(&settings);
            ::cfsetspeed(&settings, B2400);
            settings.c_cflag = (settings.c_cflag & ~tcflag_t{CSIZE}) | CS7 | PARENB;
            EXPECT_EQ(::tcsetattr(descriptor, TCSANOW, &settings), 0) << round << " " << time;
            ASSERT_EQ(::write(descriptor, "S\r\n", 3), 3);
            char answer[64] = {};
            EXPECT_EQ(::read(descriptor, answer, sizeof answer), 18);
        }
        ::close(descriptor);
    }
}

TEST(VirtualBench, A_bare_pseudo_terminal_serves_who_has_nothing_loaded) {
    VirtualBench bench;
    auto& balance = bench.PlaceOnTerminal(kBalance, Options().WithLoad(5));
    const int descriptor = ::open(balance.Device().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(::write(descriptor, "S\r\n", 3), 3);
    char answer[64] = {};
    EXPECT_EQ(::read(descriptor, answer, sizeof answer), 18);
    EXPECT_STREQ(answer, "S S       5.00 g\r\n");
    ::close(descriptor);
}
