#include "Socket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// A server that accepts no client for so long does not work.
constexpr timeval kLongestConnecting{5, 0};

/// Of the answer to a status of some thousand instruments.
constexpr std::size_t kLongestMessage = std::size_t{16} * 1024 * 1024;

[[noreturn]] void FailWith(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

Socket NewSocket() {
    Socket socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (socket.Descriptor() < 0) FailWith("cannot create a socket");
    return socket;
}

/// A file or directory by which an address is named: an address holds 107 characters only, and the
/// path of a descriptor is short.
class Place {
 public:
    Place(const fs::path& path, int flags)
        : descriptor_(::open(path.c_str(), O_PATH | O_CLOEXEC | flags)) {}
    ~Place() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    bool IsThere() const { return descriptor_ >= 0; }
    std::string ShortPath() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
    struct stat About() const {
        struct stat found = {};
        ::fstat(descriptor_, &found);
        return found;
    }

 private:
    const int descriptor_;
};

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        FailWith(path);
    }
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

[[noreturn]] void RefuseForeign(const fs::path& path) {
    throw std::runtime_error("the wbalance-sim at " + path.string() +
                             " is another user's; only your own can be controlled");
}

/// Also the directory: who owns it can put something else in the socket's place.
void RequireOwn(const fs::path& path, const struct stat& socket) {
    if (socket.st_uid != ::geteuid()) RefuseForeign(path);
    const Place directory(fs::canonical(path).parent_path(), O_DIRECTORY);
    if (!directory.IsThere() || directory.About().st_uid != ::geteuid()) RefuseForeign(path);
}

}  // namespace

Socket::~Socket() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Socket::Socket(Socket&& other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = -1;
}

Socket Socket::ListenAt(const fs::path& path) {
    Socket socket = NewSocket();
    const Place directory(fs::absolute(path).parent_path(), O_DIRECTORY);
    if (!directory.IsThere()) FailWith("cannot be controlled at " + path.string());
    const auto address = AddressOf(directory.ShortPath() + "/" + path.filename().string());
    if (::bind(socket.Descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
            0 ||
        ::listen(socket.Descriptor(), SOMAXCONN) != 0)
        FailWith("cannot be controlled at " + path.string());
    return socket;
}

std::optional<Socket> Socket::ConnectTo(const fs::path& path) {
    Socket socket = NewSocket();
    const Place found(path, 0);
    if (!found.IsThere() && errno != ENOENT && errno != ENOTDIR) FailWith(path.string());
    if (!found.IsThere() || !S_ISSOCK(found.About().st_mode)) return std::nullopt;
    RequireOwn(path, found.About());
    ::setsockopt(socket.Descriptor(), SOL_SOCKET, SO_SNDTIMEO, &kLongestConnecting,
                 sizeof kLongestConnecting);
    const auto address = AddressOf(found.ShortPath());
    if (::connect(socket.Descriptor(), reinterpret_cast<const sockaddr*>(&address),
                  sizeof address) != 0) {
        if (errno == ECONNREFUSED) return std::nullopt;
        FailWith("cannot reach the wbalance-sim at " + path.string());
    }
    if (!socket.IsOfThisUser()) RefuseForeign(path);
    return socket;
}

Socket Socket::Accept() const {
    return Socket(::accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC));
}

bool Socket::IsOfThisUser() const {
    ucred other = {};
    socklen_t size = sizeof other;
    return ::getsockopt(descriptor_, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
           other.uid == ::geteuid();
}

void Socket::Send(const std::string& message) const {
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t count =
            ::send(descriptor_, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return;
        sent += static_cast<std::size_t>(count);
    }
    ::shutdown(descriptor_, SHUT_WR);
}

std::optional<std::string> Socket::Receive(std::chrono::milliseconds patience) const {
    const auto end = Clock::now() + patience;
    std::string message;
    std::array<char, 4096> buffer;
    while (message.size() <= kLongestMessage) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd ready = {descriptor_, POLLIN, 0};
        if (left <= 0 || ::poll(&ready, 1, static_cast<int>(left)) <= 0) return std::nullopt;
        const ssize_t count = ::recv(descriptor_, buffer.data(), buffer.size(), 0);
        if (count == 0) return message;
        if (count < 0) return std::nullopt;
        message.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return std::nullopt;
}
