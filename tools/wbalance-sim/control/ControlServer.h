#pragma once

#include <atomic>
#include <filesystem>
#include <list>
#include <optional>
#include <string>
#include <thread>

#include "ControlLink.h"
#include "Conversation.h"
#include "Socket.h"
#include "simulator/VirtualBench.h"

/// Lets `wbalance-sim control` reach a bench: a socket in the bench's directory, which belongs to
/// the user alone, served by a thread of its own. It serves this user only. A connection has one
/// request. The answer is "+" and the text of the answer, or "-" and what is wrong. Up to 32
/// clients are served at the same time; further ones wait.
class ControlServer {
 public:
    /// `path`, where not empty, becomes a symbolic link to the socket for as long as the server
    /// lives. Throws std::runtime_error when another server is reached there, or when it is
    /// something else.
    ControlServer(simulator::VirtualBench& bench, const std::string& path);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// The path of the socket of a bench with this directory.
    static std::filesystem::path SocketIn(const std::filesystem::path& directory);

 private:
    void ServeUntilStopped();
    bool TakesMore() const;
    int Patience() const;
    void WaitForAny();
    void Accept();

    simulator::VirtualBench& bench_;
    const Socket socket_;
    std::optional<ControlLink> link_;
    std::list<Conversation> conversations_;
    bool isShort_ = false;  ///< of descriptors: nobody is accepted for a moment
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};
