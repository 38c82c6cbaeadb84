#pragma once

#include <filesystem>
#include <string>
#include <thread>

#include "Socket.h"
#include "simulator/VirtualBench.h"

/// Lets `wbalance-sim control` reach a bench: a socket in the bench's directory, which belongs to
/// the user alone, served by a thread of its own. One connection brings one request. The answer is
/// "+" and what there is to say, or "-" and what is wrong.
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
    static std::filesystem::path socketIn(const std::filesystem::path& directory);

 private:
    void link() const;
    void serveUntilStopped();

    simulator::VirtualBench& bench_;
    const std::filesystem::path path_;
    const Socket socket_;
    std::thread thread_;
};
