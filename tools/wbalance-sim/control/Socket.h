#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

/// One end of a local connection between two processes of the same user: a request goes one way, an
/// answer comes back.
class Socket {
 public:
    /// Takes over the descriptor.
    explicit Socket(int descriptor) : descriptor_(descriptor) {}
    ~Socket();
    Socket(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    Socket& operator=(Socket&&) = delete;

    /// Waits for connections at a path that does not exist yet; its directory may have a name of
    /// any length. Throws std::system_error.
    static Socket ListenAt(const std::filesystem::path& path);

    /// Connects to the process that listens at `path`, which may be a symbolic link and may have
    /// any length. Empty when no process listens. Throws std::runtime_error when the socket, its
    /// directory or the process belongs to another user, and when the process accepts no
    /// connections.
    static std::optional<Socket> ConnectTo(const std::filesystem::path& path);

    /// The next connection, of a socket that listens. Its descriptor is below 0 when there is none,
    /// with the reason in errno.
    Socket Accept() const;

    /// Whether the process at the other end is this user's.
    bool IsOfThisUser() const;

    /// Sends a whole message and closes this direction. It is not an error if the other end is
    /// closed.
    void Send(const std::string& message) const;

    /// The other end's whole message; empty when it is not complete after `patience`.
    std::optional<std::string> Receive(std::chrono::milliseconds patience) const;

    int Descriptor() const { return descriptor_; }  ///< for poll; do not close

 private:
    int descriptor_;
};
