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
#include "Examples.h"

using examples::kBalance;
using simulator::Options;
using simulator::VirtualBench;
using testing::AnyOf;
using testing::StartsWith;
using testing::StrEq;
using testing::ThrowsMessage;
using namespace std::chrono_literals;

namespace {

constexpr unsigned kStrangersNumber = 65'534;

class TemporaryDirectory {
 public:
    TemporaryDirectory() { EXPECT_NE(::mkdtemp(name_), nullptr); }
    ~TemporaryDirectory() { std::filesystem::remove_all(name_); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::filesystem::path Path() const { return name_; }

 private:
    char name_[32] = "/tmp/wbalance-test-XXXXXX";
};

/// Another user's process at work in a directory that is then that user's. It has begun to listen,
/// or has done what it does, when the constructor returns: the file that it makes is there.
class Stranger {
 public:
    Stranger(const std::filesystem::path& directory, const std::function<void()>& work)
        : directory_(directory) {
        EXPECT_EQ(::chown(directory.c_str(), kStrangersNumber, kStrangersNumber), 0);
        process_ = ::fork();
        if (process_ == 0) {
            if (::setgid(kStrangersNumber) == 0 && ::setuid(kStrangersNumber) == 0) work();
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
    std::string TextOf(const char* file) const {
        siginfo_t ended = {};
        ::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOWAIT);
        std::ifstream text(directory_ / file);
        return {std::istreambuf_iterator<char>(text), {}};
    }

 private:
    const std::filesystem::path directory_;
    pid_t process_ = -1;
};

std::string AnswerTo(const VirtualBench& bench, const std::string& message) {
    const auto socket = Socket::ConnectTo(ControlServer::SocketIn(bench.Directory()));
    if (!socket) return "no connection";
    socket->Send(message);
    return socket->Receive(30s).value_or("no answer");
}

}  // namespace

TEST(ControlServer, A_request_is_a_device_and_words_and_the_answer_begins_with_plus_or_minus) {
    VirtualBench bench;
    auto& balance = bench.Place(kBalance, Options().On("/dev/ttyUSB1"));
    const ControlServer server(bench, "");
    EXPECT_EQ(AnswerTo(bench, "ttyUSB1\nfault silent"), "+");
    EXPECT_EQ(balance.FaultsInForce(), std::vector<std::string>{"silent"});
    EXPECT_EQ(AnswerTo(bench, "\nplug-in"), "+/dev/ttyUSB1\n");
    EXPECT_THAT(AnswerTo(bench, "ttyS0\nend"),
                StartsWith("-no instrument is at ttyS0; there are "));
}

TEST(ControlServer, Rubbish_and_nothing_are_answered_and_hurt_nobody) {
    VirtualBench bench;
    bench.Place(kBalance);
    const ControlServer server(bench, "");
    EXPECT_THAT(AnswerTo(bench, ""), StartsWith("-\"\" is nothing that can be done"));
    EXPECT_THAT(AnswerTo(bench, "\n\xff\x01"), StartsWith("-\"\xff\x01\" is nothing that can"));
    Socket::ConnectTo(ControlServer::SocketIn(bench.Directory()));
    EXPECT_THAT(AnswerTo(bench, "\nstatus"),
                StartsWith("+/dev/ttyS0: " + kBalance + " shows 0.00 g"));
}

TEST(ControlServer, Nobody_is_reached_once_it_has_ended) {
    VirtualBench bench;
    bench.Place(kBalance);
    { const ControlServer server(bench, ""); }
    EXPECT_EQ(AnswerTo(bench, "\nstatus"), "no connection");
}

TEST(ControlServer, A_client_that_sends_a_byte_now_and_then_holds_up_nobody_nor_the_end) {
    VirtualBench bench;
    bench.Place(kBalance);
    std::atomic<bool> over{false};
    std::thread slow;
    {
        const ControlServer server(bench, "");
        auto socket = Socket::ConnectTo(ControlServer::SocketIn(bench.Directory()));
        ASSERT_TRUE(socket);
        slow = std::thread([&over, client = std::move(*socket)] {
            while (!over) {
                ::send(client.Descriptor(), "x", 1, MSG_NOSIGNAL);
                std::this_thread::sleep_for(100ms);
            }
        });
        EXPECT_THAT(AnswerTo(bench, "\nstatus"),
                    StartsWith("+/dev/ttyS0: " + kBalance + " shows 0.00 g"));
    }
    over = true;
    slow.join();
}

TEST(ControlServer, More_idle_clients_than_are_served_at_once_give_way_to_others) {
    VirtualBench bench;
    bench.Place(kBalance);
    const ControlServer server(bench, "");
    std::vector<std::optional<Socket>> idle;
    for (int i = 0; i < 40; ++i)
        idle.push_back(Socket::ConnectTo(ControlServer::SocketIn(bench.Directory())));
    EXPECT_THAT(AnswerTo(bench, "\nstatus"),
                StartsWith("+/dev/ttyS0: " + kBalance + " shows 0.00 g"));
}

TEST(ControlServer, A_request_without_an_end_is_not_listened_to) {
    VirtualBench bench;
    bench.Place(kBalance);
    const ControlServer server(bench, "");
    EXPECT_THAT(AnswerTo(bench, "\n" + std::string(65'535, 'x')), StartsWith("-\"xxx"));
    EXPECT_THAT(AnswerTo(bench, std::string(1'000'000, 'x')), AnyOf("", "no answer"));
}

TEST(ControlServer, An_answer_that_nobody_takes_holds_nobody_up) {
    VirtualBench bench;
    for (int i = 0; i < 100; ++i)
        bench.Place(kBalance, Options().On("/dev/ttyS" + std::to_string(i)));
    const ControlServer server(bench, "");
    std::vector<std::optional<Socket>> deaf;
    for (int i = 0; i < 31; ++i) {
        deaf.push_back(Socket::ConnectTo(ControlServer::SocketIn(bench.Directory())));
        const int small = 1;
        ::setsockopt(deaf.back()->Descriptor(), SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        deaf.back()->Send("\nstatus");
    }
    EXPECT_THAT(AnswerTo(bench, "\nstatus"),
                StartsWith("+/dev/ttyS0: " + kBalance + " shows 0.00 g"));
}

TEST(ControlServer, Short_of_descriptors_it_goes_on_when_there_are_some) {
    VirtualBench bench;
    bench.Place(kBalance);
    const ControlServer server(bench, "");
    // It is under way: a thread that begins without descriptors can't be judged by a sanitizer.
    EXPECT_THAT(AnswerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: " + kBalance + " shows"));
    const Socket client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ControlServer::SocketIn(bench.Directory()).string().copy(address.sun_path, 100);
    {
        const AllDescriptors taken;
        ASSERT_EQ(
            ::connect(client.Descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address),
            0);
        std::this_thread::sleep_for(50ms);  // so that it has tried to accept
    }
    client.Send("\nstatus");
    EXPECT_THAT(client.Receive(30s).value_or("no answer"),
                StartsWith("+/dev/ttyS0: " + kBalance + " shows"));
    EXPECT_THAT(AnswerTo(bench, "\nstatus"), StartsWith("+/dev/ttyS0: " + kBalance + " shows"));
}

TEST(ControlServer, Another_users_bench_is_refused) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const TemporaryDirectory place;
    const auto path = place.Path() / "control";
    const Stranger stranger(place.Path(), [&] { Socket::ListenAt(path).Accept(); });
    EXPECT_THAT([&] { Socket::ConnectTo(path); },
                ThrowsMessage<std::runtime_error>(StrEq("the wbalance-sim at " + path.string() +
                                                        " is another user's; only your own can be "
                                                        "controlled")));
}

TEST(ControlServer, A_socket_in_another_users_directory_is_refused) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    const TemporaryDirectory place;
    const Socket own = Socket::ListenAt(place.Path() / "control");
    ASSERT_EQ(::chown(place.Path().c_str(), kStrangersNumber, kStrangersNumber), 0);
    EXPECT_THROW(Socket::ConnectTo(place.Path() / "control"), std::runtime_error);
}

TEST(ControlServer, Another_user_gets_no_answer) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
    VirtualBench bench;
    bench.Place(kBalance);
    const ControlServer server(bench, "");
    const auto path = ControlServer::SocketIn(bench.Directory());
    ::chmod(bench.Directory().c_str(), 0755);
    ::chmod(path.c_str(), 0777);
    const TemporaryDirectory place;
    const Stranger stranger(place.Path(), [&] {
        const Socket socket(::socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, 100);
        ::connect(socket.Descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address);
        socket.Send("\nload 5");
        std::ofstream(place.Path() / "answer") << socket.Receive(30s).value_or("no answer") << "|";
    });
    EXPECT_THAT(stranger.TextOf("answer"), AnyOf("|", "no answer|"));
    EXPECT_THAT(AnswerTo(bench, "\nstatus"),
                StartsWith("+/dev/ttyS0: " + kBalance + " shows 0.00 g"));
}
