#include "simulator/line/PseudoTerminal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace simulator {
namespace {

constexpr std::size_t kDevPtsLength = sizeof("/dev/pts/") - 1;

[[noreturn]] void FailWith(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

int OpenRaw(const std::string& path) {
    const int slave = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0) FailWith("cannot open the pseudo-terminal");
    termios settings = {};
    tcgetattr(slave, &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, B9600);
    tcsetattr(slave, TCSANOW, &settings);
    return slave;
}

}  // namespace

PseudoTerminal::Master::~Master() {
    if (descriptor >= 0) ::close(descriptor);
}

PseudoTerminal::PseudoTerminal()
    : master_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    const int master = master_.descriptor;
    std::array<char, 64> name = {};
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, name.data(), name.size()) != 0)
        FailWith("cannot create a pseudo-terminal");
    path_ = name.data();
    const int slave = OpenRaw(path_);
    struct stat node = {};
    ::fstat(slave, &node);
    created_ = node.st_ctim;
    ::close(slave);
}

unsigned PseudoTerminal::Number() const {
    return static_cast<unsigned>(std::stoul(path_.substr(kDevPtsLength)));
}

void PseudoTerminal::ForgetSpeed() {
    termios settings = {};
    if (tcgetattr(Descriptor(), &settings) != 0 || cfgetospeed(&settings) == B134) return;
    cfsetspeed(&settings, B134);
    tcsetattr(Descriptor(), TCSANOW, &settings);
}

std::string PseudoTerminal::Read(bool* hungUp) {
    std::string bytes;
    std::array<char, 4096> buffer;
    for (;;) {
        const ssize_t count = ::read(Descriptor(), buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
            continue;
        }
        *hungUp = count < 0 && errno == EIO;
        return bytes;
    }
}

std::size_t PseudoTerminal::Write(const std::string& bytes) {
    const ssize_t count = ::write(Descriptor(), bytes.data(), bytes.size());
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

}  // namespace simulator
