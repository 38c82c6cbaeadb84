#include "ControlServer.h"

#include <sys/socket.h>

#include <stdexcept>

#include "Desk.h"

ControlServer::ControlServer(simulator::VirtualBench& bench, const std::string& path)
    : bench_(bench), path_(path), socket_(Socket::listenAt(socketIn(bench.directory()))) {
    if (!path_.empty()) link();
    thread_ = std::thread([this] { serveUntilStopped(); });
}

ControlServer::~ControlServer() {
    ::shutdown(socket_.descriptor(), SHUT_RDWR);  // wakes the thread
    thread_.join();
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove(path_, ignored);
}

std::filesystem::path ControlServer::socketIn(const std::filesystem::path& directory) {
    return directory / "control";
}

/// A link that a killed server has left is replaced.
void ControlServer::link() const {
    if (std::filesystem::is_symlink(path_)) {
        if (Socket::connectTo(path_))
            throw std::runtime_error("another wbalance-sim is controlled at " + path_.string() +
                                     "; choose another path");
        std::filesystem::remove(path_);
    }
    if (std::filesystem::exists(path_))
        throw std::runtime_error(path_.string() + " exists already; choose another path");
    std::error_code error;
    std::filesystem::create_symlink(std::filesystem::absolute(socketIn(bench_.directory())), path_,
                                    error);
    if (error)
        throw std::runtime_error("cannot be controlled at " + path_.string() + ": " +
                                 error.message());
}

void ControlServer::serveUntilStopped() {
    for (;;) {
        const Socket connection = socket_.accept();
        if (connection.descriptor() < 0) return;
        const auto message = connection.receive(std::chrono::seconds(2));
        if (!message) continue;
        try {
            connection.send("+" + carryOut(Request::ofMessage(*message), bench_));
        } catch (const std::exception& error) {
            connection.send(std::string("-") + error.what());
        }
    }
}
