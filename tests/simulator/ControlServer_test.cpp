#include "control/ControlServer.h"

#include <gmock/gmock.h>

using simulator::Options;
using simulator::VirtualBench;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

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
