#include "control/ControlServer.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>

#include "AllDescriptors.h"

using simulator::Options;
using simulator::VirtualBench;
using testing::AnyOf;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using namespace std::chrono_literals;

namespace {

constexpr unsigned strangersNumber = 65'534;

class TemporaryDirectory {
 public:
    TemporaryDirectory() { EXPECT_NE(::mkdtemp(name_), nullptr); }
    ~TemporaryDirectory() { std::filesystem::remove_all(name_); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::filesystem::path path() const { return name_; }

 private:
    char name_[32] = "/tmp/wbalance-test-XXXXXX";
};

/// Another user's process at work in a directory that is then that user's. It has begun to listen,
/// or has done what it does, when the constructor returns: the file that it makes is there.
class Stranger {
 public:
    Stranger(const std::filesystem::path& directory, const std::function<void()>& work)
        : directory_(directory) {
        EXPECT_EQ(::chown(directory.c_str(), strangersNumber, strangersNumber), 0);
        process_ = ::fork();
        if (process_ == 0) {
            if (::setgid(strangersNumber) == 0 && ::setuid(strangersNumber) == 0) work();
            ::_exit(0);
        }
        while (std::filesystem::is_empty(directory))
            std::this_thread::sleep_for(10ms);
    }
    ~Stranger() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    Stranger(const Stranger&) = delete;
    Stranger& operator=(const Stranger&) = delete;

    /// What it has written into a file, all of it, once it has ended.
    std::string textOf(const char* file) const {
        siginfo_t ended = {};
        ::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOWAIT);
        std::ifstream text(directory_ / file);
        return {std::istreambuf_iterator<char>(text), {}};
    }

 private:
    const std::filesystem::path directory_;
    pid_t process_ = -1;
};

std::string answerTo(const VirtualBench& bench, const std::string& message) {
    const auto socket = Socket::connectTo(ControlServer::socketIn(bench.directory()));
    if (!socket) return "no connection";
    socket->send(message);
    return socket->receive(30s).value_or("no answer");
}

}  // namespace

TEST(ControlServer, A_request_is_a_device_and_words_and_the_answer_begins_with_plus_or_minus) {
    VirtualBench bench;
    auto& balance = bench.place("kern", Options().on("/dev/ttyUSB1"));
    const ControlServer server(bench, "");
    EXPECT_EQ(answerTo(bench, "ttyUSB1\nfault silent"), "+");
    EXPECT_EQ(balance.faultsInForce(), std::vector<std::string>{"silent"});
    EXPECT_EQ(answerTo(bench, "\nplug-in"), "+/dev/ttyUSB1\n");
    EXPECT_THAT(answerTo(bench, "ttyS0\nend"),
                StartsWith("-no instrument is at ttyS0; there are "));
}

TEST(ControlServer, Rubbish_and_nothing_are_answered_and_hurt_nobody) {
    VirtualBench bench;
    bench.place("kern");
    const ControlServer server(bench, "");
    EXPECT_THAT(answerTo(bench, ""), StartsWith("-\"\" is nothing that can be done"));
    EXPECT_THAT(answerTo(bench, "\n\xff\x01"), StartsWith("-\"\xff\x01\" is nothing that can"));
    Socket::connectTo(ControlServer::socketIn(bench.directory()));
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows 0.00 g"));
}

TEST(ControlServer, Nobody_is_reached_once_it_has_ended) {
    VirtualBench bench;
    bench.place("kern");
    { const ControlServer server(bench, ""); }
    EXPECT_EQ(answerTo(bench, "\nstatus"), "no connection");
}

TEST(ControlServer, A_client_that_sends_a_byte_now_and_then_holds_up_nobody_nor_the_end) {
    VirtualBench bench;
    bench.place("kern");
    std::atomic<bool> over{false};
    std::thread slow;
    {
        const ControlServer server(bench, "");
        auto socket = Socket::connectTo(ControlServer::socketIn(bench.directory()));
        ASSERT_TRUE(socket);
        slow = std::thread([&over, client = std::move(*socket)] {
            while (!over) {
                ::send(client.descriptor(), "x", 1, MSG_NOSIGNAL);
                std::this_thread::sleep_for(100ms);
            }
        });
        EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows 0.00 g"));
    }
    over = true;
    slow.join();
}

TEST(ControlServer, More_idle_clients_than_are_served_at_once_give_way_to_others) {
    VirtualBench bench;
    bench.place("kern");
    const ControlServer server(bench, "");
    std::vector<std::optional<Socket>> idle;
    for (int i = 0; i < 40; ++i)
        idle.push_back(Socket::connectTo(ControlServer::socketIn(bench.directory())));
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows 0.00 g"));
}

TEST(ControlServer, A_request_without_an_end_is_not_listened_to) {
    VirtualBench bench;
    bench.place("kern");
    const ControlServer server(bench, "");
    EXPECT_THAT(answerTo(bench, "\n" + std::string(65'535, 'x')), StartsWith("-\"xxx"));
    EXPECT_THAT(answerTo(bench, std::string(1'000'000, 'x')), AnyOf("", "no answer"));
}

TEST(ControlServer, An_answer_that_nobody_takes_holds_nobody_up) {
    VirtualBench bench;
    for (int i = 0; i < 100; ++i)
        bench.place("kern", Options().on("/dev/ttyS" + std::to_string(i)));
    const ControlServer server(bench, "");
    std::vector<std::optional<Socket>> deaf;
    for (int i = 0; i < 31; ++i) {
        deaf.push_back(Socket::connectTo(ControlServer::socketIn(bench.directory())));
        const int small = 1;
        ::setsockopt(deaf.back()->descriptor(), SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        deaf.back()->send("\nstatus");
    }
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows 0.00 g"));
}

TEST(ControlServer, Short_of_descriptors_it_goes_on_when_there_are_some) {
    VirtualBench bench;
    bench.place("kern");
    const ControlServer server(bench, "");
    // It is under way: a thread that begins without descriptors can't be judged by a sanitizer.
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows"));
    const Socket client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ControlServer::socketIn(bench.directory()).string().copy(address.sun_path, 100);
    {
        const AllDescriptors taken;
        ASSERT_EQ(
            ::connect(client.descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address),
            0);
        std::this_thread::sleep_for(50ms);  // so that it has tried to accept
    }
    client.send("\nstatus");
    EXPECT_THAT(client.receive(30s).value_or("no answer"), StartsWith("+/dev/ttyS0: kern shows"));
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows"));
}

TEST(ControlServer, Another_users_bench_is_refused) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const TemporaryDirectory place;
    const auto path = place.path() / "control";
    const Stranger stranger(place.path(), [&] { Socket::listenAt(path).accept(); });
    EXPECT_THAT([&] { Socket::connectTo(path); },
                ThrowsMessage<std::runtime_error>(StrEq("the wbalance-sim at " + path.string() +
                                                        " is another user's; only your own can be "
                                                        "controlled")));
}

TEST(ControlServer, A_socket_in_another_users_directory_is_refused) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const TemporaryDirectory place;
    const Socket own = Socket::listenAt(place.path() / "control");
    ASSERT_EQ(::chown(place.path().c_str(), strangersNumber, strangersNumber), 0);
    EXPECT_THROW(Socket::connectTo(place.path() / "control"), std::runtime_error);
}

TEST(ControlServer, Another_user_gets_no_answer) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    VirtualBench bench;
    bench.place("kern");
    const ControlServer server(bench, "");
    const auto path = ControlServer::socketIn(bench.directory());
    ::chmod(bench.directory().c_str(), 0755);
    ::chmod(path.c_str(), 0777);
    const TemporaryDirectory place;
    const Stranger stranger(place.path(), [&] {
        const Socket socket(::socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, 100);
        ::connect(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address);
        socket.send("\nload 5");
        std::ofstream(place.path() / "answer") << socket.receive(30s).value_or("no answer") << "|";
    });
    EXPECT_THAT(stranger.textOf("answer"), AnyOf("|", "no answer|"));
    EXPECT_THAT(answerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: kern shows 0.00 g"));
}
