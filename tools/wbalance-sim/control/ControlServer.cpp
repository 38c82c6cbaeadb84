#include "ControlServer.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "ControlRequest.h"

namespace {

constexpr std::size_t kMostConversations = 32;

/// Until then somebody may have closed a descriptor.
constexpr int kMomentInMilliseconds = 100;

std::string AnswerTo(const std::string& request, simulator::VirtualBench& bench) {
    try {
        return "+" + CarryOut(ControlRequest::OfMessage(request), bench);
    } catch (const std::exception& error) {
        return std::string("-") + error.what();
    }
}

}  // namespace

ControlServer::ControlServer(simulator::VirtualBench& bench, const std::string& path)
    : bench_(bench), socket_(Socket::ListenAt(SocketIn(bench.Directory()))) {
    if (!path.empty()) link_.emplace(path, SocketIn(bench.Directory()));
    thread_ = std::thread([this] { ServeUntilStopped(); });
}

ControlServer::~ControlServer() {
    stopping_ = true;
    ::shutdown(socket_.Descriptor(), SHUT_RDWR);  // wakes the thread
    thread_.join();
}

std::filesystem::path ControlServer::SocketIn(const std::filesystem::path& directory) {
    return directory / "control";
}

void ControlServer::ServeUntilStopped() {
    while (!stopping_) {
        WaitForAny();
        conversations_.remove_if([](const Conversation& each) { return each.IsOver(); });
    }
}

bool ControlServer::TakesMore() const {
    return !isShort_ && conversations_.size() < kMostConversations;
}

/// Milliseconds until something is to be done although nobody says anything; below 0: never.
int ControlServer::Patience() const {
    if (isShort_) return kMomentInMilliseconds;
    if (conversations_.empty()) return -1;
    const auto first = std::min_element(
        conversations_.begin(), conversations_.end(),
        [](const Conversation& a, const Conversation& b) { return a.End() < b.End(); });
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(first->End() - Conversation::Clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

void ControlServer::WaitForAny() {
    const short nothing = 0;  // but the end of the socket, which is told in any case
    std::vector<pollfd> all = {{socket_.Descriptor(), TakesMore() ? short{POLLIN} : nothing, 0}};
    for (const Conversation& each : conversations_)
        all.push_back({each.Descriptor(), each.Awaited(), 0});
    ::poll(all.data(), all.size(), Patience());
    isShort_ = false;
    auto ready = all.begin();
    const bool isAsked = ready->revents != 0;
    for (Conversation& each : conversations_)
        if ((++ready)->revents != 0) each.GoOn();
    if (isAsked && !stopping_) Accept();
}

void ControlServer::Accept() {
    Socket client = socket_.Accept();
    if (client.Descriptor() < 0) {
        isShort_ = errno != EINTR && errno != ECONNABORTED;
        return;
    }
    conversations_.emplace_back(std::move(client), [this](const std::string& request) {
        return AnswerTo(request, bench_);
    });
}
