#include "PortLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "process/Descriptor.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// Anybody may write to /var/lock: a named pipe would be waited for, a link leads elsewhere.
Descriptor Opened(const std::string& lockFile) {
    return Descriptor(
        open(lockFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY));
}

bool IsPlainFile(const Descriptor& file) {
    struct stat node {};
    return fstat(file.Get(), &node) == 0 && S_ISREG(node.st_mode);
}

// "      4321\n", and what else the program says of itself
pid_t ProcessNamedIn(const std::string& lockFile) {
    const Descriptor file = Opened(lockFile);
    char text[32] = {};
    if (file.Get() < 0 || !IsPlainFile(file) || read(file.Get(), text, sizeof text - 1) < 0)
        return 0;
    return std::atoi(text);
}

}  // namespace

std::string LockFile(const std::string& device) {
    return "/var/lock/LCK.." + fs::path(device).filename().string();
}

pid_t LockHolder(const std::string& device) {
    const pid_t process = ProcessNamedIn(LockFile(device));
    return process > 0 && fs::exists("/proc/" + std::to_string(process)) ? process : 0;
}

bool LockIsNoFile(const std::string& device) {
    const Descriptor file = Opened(LockFile(device));
    return file.Get() < 0 ? errno == ELOOP : !IsPlainFile(file);
}

void RemoveLockOf(const std::string& device, pid_t process) {
    if (ProcessNamedIn(LockFile(device)) == process) unlink(LockFile(device).c_str());
}

}  // namespace tool
