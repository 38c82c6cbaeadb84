#include "Socket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace {

Socket newSocket() {
    Socket socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.descriptor() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot create a socket");
    return socket;
}

/// The address of a path of any length: an address holds 107 characters only, so it names the
/// directory by the number of its descriptor.
class Address {
 public:
    explicit Address(const std::filesystem::path& path)
        : directory_(::open(std::filesystem::absolute(path).parent_path().c_str(),
                            O_PATH | O_DIRECTORY | O_CLOEXEC)) {
        const std::string name =
            "/proc/self/fd/" + std::to_string(directory_) + "/" + path.filename().string();
        address_.sun_family = AF_UNIX;
        name.copy(address_.sun_path, sizeof address_.sun_path - 1);
    }
    ~Address() { ::close(directory_); }
    Address(const Address&) = delete;
    Address& operator=(const Address&) = delete;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address_); }
    static socklen_t size() { return sizeof(sockaddr_un); }

 private:
    int directory_;
    sockaddr_un address_ = {};
};

}  // namespace

Socket::~Socket() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Socket::Socket(Socket&& other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = -1;
}

Socket Socket::listenAt(const std::filesystem::path& path) {
    Socket socket = newSocket();
    const Address address(path);
    if (::bind(socket.descriptor(), address.get(), Address::size()) != 0 ||
        ::listen(socket.descriptor(), SOMAXCONN) != 0)
        throw std::system_error(errno, std::generic_category(),
                                "cannot be controlled at " + path.string());
    return socket;
}

std::optional<Socket> Socket::connectTo(const std::filesystem::path& path) {
    Socket socket = newSocket();
    const Address address(path);
    if (::connect(socket.descriptor(), address.get(), Address::size()) != 0) return std::nullopt;
    return socket;
}

Socket Socket::accept() const {
    return Socket(::accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC));
}

void Socket::send(const std::string& message) const {
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t count =
            ::send(descriptor_, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return;
        sent += static_cast<std::size_t>(count);
    }
    ::shutdown(descriptor_, SHUT_WR);
}

std::optional<std::string> Socket::receive(std::chrono::seconds patience) const {
    const timeval longest{patience.count(), 0};
    ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
    std::string message;
    std::array<char, 1024> buffer;
    for (;;) {
        const ssize_t count = ::recv(descriptor_, buffer.data(), buffer.size(), 0);
        if (count == 0) return message;
        if (count < 0 || message.size() > 65536) return std::nullopt;
        message.append(buffer.data(), static_cast<std::size_t>(count));
    }
}
