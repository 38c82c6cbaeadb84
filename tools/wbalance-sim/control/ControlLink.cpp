#include "ControlLink.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "ControlServer.h"
#include "Socket.h"
#include "simulator/BenchDirectory.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path& path, const std::error_code& why) {
    throw std::runtime_error("cannot be controlled at " + path.string() + ": " + why.message());
}

/// Whether it is a link of this user that leads to where a bench has, or had, its socket.
bool IsControlLink(const fs::path& path, const struct stat& found) {
    if (!S_ISLNK(found.st_mode) || found.st_uid != ::geteuid()) return false;
    std::error_code ignored;
    const fs::path target = fs::read_symlink(path, ignored);
    return simulator::BenchDirectory::IsName(target.parent_path()) &&
           target == ControlServer::SocketIn(target.parent_path());
}

/// Whether something else than a control link is where the link leads to.
bool LeadsToSomethingElse(const fs::path& path) {
    struct stat found = {};
    return ::stat(path.c_str(), &found) == 0 &&
           (!S_ISSOCK(found.st_mode) || found.st_uid != ::geteuid());
}

void Clear(const fs::path& path) {
    struct stat found = {};
    if (::lstat(path.c_str(), &found) != 0) {
        if (errno == ENOENT) return;
        Refuse(path, std::error_code(errno, std::generic_category()));
    }
    if (!IsControlLink(path, found) || LeadsToSomethingElse(path))
        throw std::runtime_error(path.string() +
                                 " exists already and is no link that a wbalance-sim of yours has "
                                 "left; choose another path");
    if (Socket::ConnectTo(path))
        throw std::runtime_error("another wbalance-sim is controlled at " + path.string() +
                                 "; choose another path");
    fs::remove(path);
}

}  // namespace

ControlLink::ControlLink(fs::path path, const fs::path& socket)
    : path_(std::move(path)), target_(fs::absolute(socket)) {
    Clear(path_);
    std::error_code error;
    fs::create_symlink(target_, path_, error);
    if (error) Refuse(path_, error);
}

ControlLink::~ControlLink() {
    std::error_code ignored;
    if (fs::read_symlink(path_, ignored) == target_) fs::remove(path_, ignored);
}
