#include "PortLock.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "process/Descriptor.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// "      4321\n", and what else the program says of itself
pid_t ProcessNamedIn(const std::string& lockFile) {
    const Descriptor file(open(lockFile.c_str(), O_RDONLY | O_CLOEXEC));
    char text[32] = {};
    if (file.Get() < 0 || read(file.Get(), text, sizeof text - 1) < 0) return 0;
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

void RemoveLockOf(const std::string& device, pid_t process) {
    if (ProcessNamedIn(LockFile(device)) == process) unlink(LockFile(device).c_str());
}

}  // namespace tool
