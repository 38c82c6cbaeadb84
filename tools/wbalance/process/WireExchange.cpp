#include "WireExchange.h"

#include <algorithm>
#include <string_view>

namespace tool {
namespace {

constexpr std::string_view kOpenFailed = "INVALID COMM PORT ... UNABLE OPENING ";
constexpr std::string_view kSettings = "Balance Comm Port settings:\n";
constexpr std::string_view kRefused = "===> FAIL\n\n";
constexpr std::string_view kCommand = "<== ";
constexpr std::string_view kTaken = " ... OK\n\n";
constexpr std::string_view kNotTaken = " ... FAIL\n\n";
constexpr std::string_view kReceived = "Read from scale: ";
constexpr std::string_view kElapsed = " (time elapsed: ";

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// "<== S\r\n ... OK\n\n"
WireExchange ReadCommand(const TraceText& traced) {
    const std::string_view text = traced.text;
    WireExchange exchange;
    exchange.taken = EndsWith(text, kTaken);
    const std::size_t tail = exchange.taken ? kTaken.size() : kNotTaken.size();
    if (text.size() >= kCommand.size() + tail)
        exchange.command = text.substr(kCommand.size(), text.size() - kCommand.size() - tail);
    exchange.sent = exchange.answered = traced.time;
    return exchange;
}

// "Read from scale: S S     100.00 g\r\n (time elapsed: 12 ms)\n". The line without the elapsed
// time repeats what a longer reading was put together from.
std::string ReadAnswer(std::string_view text) {
    const std::size_t end = text.rfind(kElapsed);
    if (end == std::string_view::npos || end < kReceived.size()) return "";
    return std::string(text.substr(kReceived.size(), end - kReceived.size()));
}

bool HoldsAWait(std::string_view text) {
    return StartsWith(text, kReceived) && text.rfind(kElapsed) != std::string_view::npos;
}

}  // namespace

bool IsCommand(const std::string& traced) {
    return StartsWith(traced, kCommand);
}

bool IsPause(const std::string& traced) {
    return HoldsAWait(traced) && ReadAnswer(traced).empty();
}

std::string AnswerIn(const std::string& traced) {
    return HoldsAWait(traced) ? ReadAnswer(traced) : "";
}

WireExchanges::WireExchanges(const std::vector<TraceText>& trace) {
    for (const auto& traced : trace) {
        const std::string_view text = traced.text;
        if (StartsWith(text, kOpenFailed)) openFailed = true;
        if (StartsWith(text, kSettings) && EndsWith(text, kRefused)) settingsRefused = true;
        if (IsCommand(traced.text)) exchanges.push_back(ReadCommand(traced));
        const std::string answer = AnswerIn(traced.text);
        if (answer.empty()) continue;
        if (exchanges.empty()) exchanges.emplace_back();
        exchanges.back().answer += answer;
        exchanges.back().answered = traced.time;
    }
}

bool WireExchanges::AnythingSent() const {
    return std::any_of(exchanges.begin(), exchanges.end(),
                       [](const WireExchange& exchange) { return exchange.taken; });
}

bool WireExchanges::AnythingReceived() const {
    return !Received().empty();
}

std::string WireExchanges::Received() const {
    std::string received;
    for (const auto& exchange : exchanges)
        received += exchange.answer;
    return received;
}

}  // namespace tool
