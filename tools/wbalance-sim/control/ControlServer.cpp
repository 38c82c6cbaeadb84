#include "ControlServer.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "Desk.h"

namespace {

constexpr std::size_t mostConversations = 32;

/// Until then somebody may have closed a descriptor.
constexpr int momentInMilliseconds = 100;

std::string answerTo(const std::string& request, simulator::VirtualBench& bench) {
    try {
        return "+" + carryOut(Request::ofMessage(request), bench);
    } catch (const std::exception& error) {
        return std::string("-") + error.what();
    }
}

}  // namespace

ControlServer::ControlServer(simulator::VirtualBench& bench, const std::string& path)
    : bench_(bench), socket_(Socket::listenAt(socketIn(bench.directory()))) {
    if (!path.empty()) link_.emplace(path, socketIn(bench.directory()));
    thread_ = std::thread([this] { serveUntilStopped(); });
}

ControlServer::~ControlServer() {
    stopping_ = true;
    ::shutdown(socket_.descriptor(), SHUT_RDWR);  // wakes the thread
    thread_.join();
}

std::filesystem::path ControlServer::socketIn(const std::filesystem::path& directory) {
    return directory / "control";
}

void ControlServer::serveUntilStopped() {
    while (!stopping_) {
        waitForAny();
        conversations_.remove_if([](const Conversation& each) { return each.isOver(); });
    }
}

bool ControlServer::takesMore() const {
    return !isShort_ && conversations_.size() < mostConversations;
}

/// Milliseconds until something is to be done although nobody says anything; below 0: never.
int ControlServer::patience() const {
    if (isShort_) return momentInMilliseconds;
    if (conversations_.empty()) return -1;
    const auto first = std::min_element(
        conversations_.begin(), conversations_.end(),
        [](const Conversation& a, const Conversation& b) { return a.end() < b.end(); });
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(first->end() - Conversation::Clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

void ControlServer::waitForAny() {
    const short nothing = 0;  // but the end of the socket, which is told in any case
    std::vector<pollfd> all = {{socket_.descriptor(), takesMore() ? short{POLLIN} : nothing, 0}};
    for (const Conversation& each : conversations_)
        all.push_back({each.descriptor(), each.awaited(), 0});
    ::poll(all.data(), all.size(), patience());
    isShort_ = false;
    auto ready = all.begin();
    const bool isAsked = ready->revents != 0;
    for (Conversation& each : conversations_)
        if ((++ready)->revents != 0) each.goOn();
    if (isAsked && !stopping_) accept();
}

void ControlServer::accept() {
    Socket client = socket_.accept();
    if (client.descriptor() < 0) {
        isShort_ = errno != EINTR && errno != ECONNABORTED;
        return;
    }
    conversations_.emplace_back(std::move(client), [this](const std::string& request) {
        return answerTo(request, bench_);
    });
}
