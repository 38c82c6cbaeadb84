#include "Mishaps.h"

#include <utility>

namespace faults {
namespace {

using scripted::Line;
using scripted::PortFault;
using scripted::Reply;
using Replies = std::vector<Reply>;
using Change = std::function<Replies(const Reply&)>;

constexpr long kLate = 50;  // within a time-out

const std::pair<std::string, Change> kChanges[] = {
    {"dropped", [](const Reply&) { return Replies{}; }},
    {"just within a time-out",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 999}};
     }},
    {"just as a time-out ends",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 1000}};
     }},
    {"just past a time-out",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 1001}};
     }},
    {"past two time-outs",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 2500}};
     }},
    {"past three time-outs",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 3100}};
     }},
    {"much too late",
     [](const Reply& reply) {
         return Replies{{reply.bytes, reply.afterMs + 9000}};
     }},
    {"doubled",
     [](const Reply& reply) {
         return Replies{{reply.bytes + reply.bytes, reply.afterMs}};
     }},
    {"doubled a little later",
     [](const Reply& reply) {
         return Replies{reply, {reply.bytes, reply.afterMs + kLate}};
     }},
    {"doubled past a time-out",
     [](const Reply& reply) {
         return Replies{reply, {reply.bytes, reply.afterMs + 1700}};
     }},
    {"four times over",
     [](const Reply& reply) {
         const std::string twice = reply.bytes + reply.bytes;
         return Replies{{twice + twice, reply.afterMs}};
     }},
    {"behind a line of the print key",
     [](const Reply& reply) {
         return Replies{{"      12.34 g  \r\n" + reply.bytes, reply.afterMs}};
     }},
    {"ahead of a line of the print key",
     [](const Reply& reply) {
         return Replies{{reply.bytes + "      12.34 g  \r\n", reply.afterMs}};
     }},
    {"behind another answer",
     [](const Reply& reply) {
         return Replies{{"ES\r\n" + reply.bytes, reply.afterMs}};
     }},
    {"with another answer in its middle",
     [](const Reply& reply) {
         const std::size_t half = reply.bytes.size() / 2;
         return Replies{
             {reply.bytes.substr(0, half) + "ES\r\n" + reply.bytes.substr(half), reply.afterMs}};
     }},
    {"in place of which another answer comes",
     [](const Reply& reply) {
         return Replies{{"ES\r\n", reply.afterMs}};
     }},
    {"in place of which blanks come",
     [](const Reply& reply) {
         return Replies{{std::string(reply.bytes.size(), ' '), reply.afterMs}};
     }},
    {"behind a zero byte",
     [](const Reply& reply) {
         return Replies{{std::string(1, '\0') + reply.bytes, reply.afterMs}};
     }},
    {"with a zero byte in its middle",
     [](const Reply& reply) {
         std::string bytes = reply.bytes;
         bytes.insert(bytes.size() / 2, 1, '\0');
         return Replies{{bytes, reply.afterMs}};
     }},
    {"with the parity bit as bit 7",
     [](const Reply& reply) {
         std::string bytes = reply.bytes;
         for (char& byte : bytes)
             byte = static_cast<char>(static_cast<unsigned char>(byte) | 0x80U);
         return Replies{{bytes, reply.afterMs}};
     }},
    {"behind 20 characters of noise",
     [](const Reply& reply) {
         return Replies{{std::string(20, '~') + reply.bytes, reply.afterMs}};
     }},
    {"behind 80 characters of noise",
     [](const Reply& reply) {
         return Replies{{std::string(80, '~') + reply.bytes, reply.afterMs}};
     }},
    {"behind 300 characters of noise",
     [](const Reply& reply) {
         return Replies{{std::string(300, '~') + reply.bytes, reply.afterMs}};
     }},
    {"ahead of 80 characters of noise",
     [](const Reply& reply) {
         return Replies{{reply.bytes + std::string(80, '~'), reply.afterMs}};
     }},
    {"character by character",
     [](const Reply& reply) {
         Replies pieces;
         for (std::size_t i = 0; i < reply.bytes.size(); ++i)
             pieces.push_back({reply.bytes.substr(i, 1), reply.afterMs + 8 * static_cast<long>(i)});
         return pieces;
     }},
    {"without its line end",
     [](const Reply& reply) {
         return Replies{
             {reply.bytes.substr(0, reply.bytes.find_last_not_of("\r\n") + 1), reply.afterMs}};
     }},
    {"with a bare line feed",
     [](const Reply& reply) {
         return Replies{{reply.bytes.substr(0, reply.bytes.find_last_not_of("\r\n") + 1) + "\n",
                         reply.afterMs}};
     }},
};

void AddChange(std::size_t exchange, std::size_t reply, const std::string& name,
               const Change& change, std::vector<Mishap>& mishaps) {
    const auto strike = [=](Script& script, Line&) {
        Replies& replies = script[exchange].replies;
        const auto position = replies.begin() + static_cast<std::ptrdiff_t>(reply);
        const Replies changed = change(*position);
        replies.insert(replies.erase(position), changed.begin(), changed.end());
    };
    mishaps.push_back(
        {"answer " + std::to_string(exchange + 1) + "." + std::to_string(reply + 1) + " " + name,
         strike});
}

Change CutAt(std::size_t length) {
    return [=](const Reply& reply) {
        return Replies{{reply.bytes.substr(0, length), reply.afterMs}};
    };
}

Change SplitAt(std::size_t length, long laterMs) {
    return [=](const Reply& reply) {
        return Replies{{reply.bytes.substr(0, length), reply.afterMs},
                       {reply.bytes.substr(length), reply.afterMs + laterMs}};
    };
}

}  // namespace

void AddCallMishaps(int number, const std::string& call, std::vector<Mishap>& mishaps) {
    const auto add = [&](const char* how, PortFault fault) {
        mishaps.push_back({"call " + std::to_string(number) + " (" + call + ") " + how,
                           [=](Script&, Line& line) { line.FailCall(number, fault); }});
    };
    add("refused", PortFault::Refuse);
    add("hangs up", PortFault::HangUp);
    if (call == "write") add("takes one byte less", PortFault::ShortWrite);
    if (call == "wait") add("silent", PortFault::Silence);
    if (call == "wait") add("signals data and has none", PortFault::EmptyRead);
    if (call == "open")
        mishaps.push_back(
            {"no memory for the port", [](Script&, Line& line) { line.FailNextAllocation(); }});
}

void AddAnswerMishaps(const Script& script, std::vector<Mishap>& mishaps) {
    for (std::size_t exchange = 0; exchange < script.size(); ++exchange) {
        const Replies& replies = script[exchange].replies;
        for (std::size_t reply = 0; reply < replies.size(); ++reply) {
            for (const auto& [name, change] : kChanges)
                AddChange(exchange, reply, name, change, mishaps);
            for (std::size_t length = 1; length < replies[reply].bytes.size(); ++length) {
                const std::string at = " at " + std::to_string(length);
                AddChange(exchange, reply, "cut" + at, CutAt(length), mishaps);
                AddChange(exchange, reply, "split" + at, SplitAt(length, kLate), mishaps);
                AddChange(exchange, reply, "split and late" + at, SplitAt(length, 1300), mishaps);
            }
        }
    }
}

}  // namespace faults
