#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

/// One end of a local connection: a request goes one way, an answer comes back.
class Socket {
 public:
    /// Takes over the descriptor.
    explicit Socket(int descriptor) : descriptor_(descriptor) {}
    ~Socket();
    Socket(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    Socket& operator=(Socket&&) = delete;

    /// Waits for connections at a path that does not exist yet. Throws std::system_error.
    static Socket listenAt(const std::filesystem::path& path);

    /// Connects to who listens at `path`, also where that is a symbolic link; empty when nobody
    /// does.
    static std::optional<Socket> connectTo(const std::filesystem::path& path);

    /// The next connection, of a socket that listens.
    Socket accept() const;

    /// Sends a whole message, which ends this direction. An other end that has gone is no error.
    void send(const std::string& message) const;

    /// The other end's whole message; empty when `patience` ends between two parts of it.
    std::optional<std::string> receive(std::chrono::seconds patience) const;

    int descriptor() const { return descriptor_; }  ///< for poll; do not close

 private:
    int descriptor_;
};
