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
/// the user alone, served by a thread of its own. Only this user is listened to. One connection
/// brings one request. The answer is "+" and what there is to say, or "-" and what is wrong. 32
/// clients at a time are served side by side, so that none waits for another; more wait in line.
class ControlServer {
 public:
    /// `path`, where not empty, becomes a symbolic link to the socket for as long as the server
    /// lives. Throws std::runtime_error when another server is reached there, or when it is
    /// something else.
    ControlServer(simulator::VirtualBench& bench, const std::string& path);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// Where the socket of a bench with this directory is.
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
