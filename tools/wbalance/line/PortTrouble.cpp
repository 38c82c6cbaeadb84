#include "PortTrouble.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "PortLock.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

std::string ProgramName(long pid) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
    return name.empty() ? "another program" : name;
}

enum class Sight { Open, NotOpen, Hidden };

// Whether a process has the device open; of another user's processes only root sees it.
Sight LookInto(const fs::path& process, const std::string& device) {
    std::error_code error;
    bool hidden = false;
    for (fs::directory_iterator file(process / "fd", error), end; !error && file != end;
         file.increment(error)) {
        std::error_code unreadable;
        if (fs::read_symlink(file->path(), unreadable) == device) return Sight::Open;
        hidden = hidden || unreadable == std::errc::permission_denied;
    }
    return hidden || error ? Sight::Hidden : Sight::NotOpen;
}

long OpenHolder(const std::string& device) {
    std::error_code error;
    for (fs::directory_iterator process("/proc", error), end; !error && process != end;
         process.increment(error)) {
        const std::string name = process->path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const long pid = std::stol(name);
        if (pid != getpid() && LookInto(process->path(), device) == Sight::Open) return pid;
    }
    return 0;
}

struct Holder {
    long process = 0;           ///< 0: nobody is seen
    bool isSeenToHold = false;  ///< else only the lock file tells
};

// A lock file that was left behind may name a process that has nothing to do with the port.
Holder FindHolder(const std::string& device) {
    if (const long process = OpenHolder(device)) return {process, true};
    const pid_t locker = LockHolder(device);
    if (locker == 0) return {};
    const bool hidden = LookInto("/proc/" + std::to_string(locker), device) == Sight::Hidden;
    return hidden ? Holder{locker, false} : Holder{};
}

std::string TextOf(const Holder& holder) {
    if (holder.process == 0) return "";
    return (holder.isSeenToHold ? "" : "a program that may be ") + ProgramName(holder.process) +
           " (process " + std::to_string(holder.process) + ")";
}

Finding FindingFor(const Holder& holder, const std::string& device) {
    if (holder.process == 0) return {Trouble::HeldByAnotherUser, {{"DEVICE", device}}};
    return {holder.isSeenToHold ? Trouble::Held : Trouble::PerhapsHeld,
            {{"PROGRAM", ProgramName(holder.process)},
             {"N", std::to_string(holder.process)},
             {"FILE", LockFile(device)}}};
}

std::string GroupName(gid_t group) {
    const auto* entry = getgrgid(group);
    return entry != nullptr ? entry->gr_name : std::to_string(group);
}

bool ProcessIsInGroup(gid_t group) {
    std::vector<gid_t> groups(65536);
    const int count = getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(static_cast<std::size_t>(std::max(count, 0)));
    return getegid() == group || std::find(groups.begin(), groups.end(), group) != groups.end();
}

std::string UserName(uid_t user) {
    const auto* entry = getpwuid(user);
    return entry != nullptr ? entry->pw_name : std::to_string(user);
}

bool UserIsListedInGroup(gid_t group) {
    const auto* user = getpwuid(geteuid());
    if (user == nullptr) return false;
    gid_t groups[256];
    int count = 256;
    if (getgrouplist(user->pw_name, user->pw_gid, groups, &count) < 0) return false;
    return std::find(groups, groups + count, group) != groups + count;
}

constexpr mode_t kUse = S_IROTH | S_IWOTH;

bool MayBeUsed(mode_t rights) {
    return (rights & kUse) == kUse;
}

mode_t GroupRights(const struct stat& node) {
    return node.st_mode >> 3;
}

// Of a node's rights only those of the first class count that a process is in: owner, group,
// others.
bool RightsSuffice(const struct stat& node) {
    if (geteuid() == 0) return true;
    if (geteuid() == node.st_uid) return MayBeUsed(node.st_mode >> 6);
    return MayBeUsed(ProcessIsInGroup(node.st_gid) ? GroupRights(node) : node.st_mode);
}

// Whether somebody who joins the node's group may use it; nobody should join root's.
bool JoiningHelps(const struct stat& node) {
    return MayBeUsed(GroupRights(node)) && node.st_gid != 0 && node.st_uid != geteuid() &&
           getgrgid(node.st_gid) != nullptr;
}

Finding WhyForbidden(const std::string& device) {
    struct stat node {};
    if (stat(device.c_str(), &node) != 0) return {Trouble::Forbidden};
    if (RightsSuffice(node)) return {Trouble::Policy};
    const std::string group = GroupName(node.st_gid);
    if (!JoiningHelps(node)) {
        char mode[8];
        std::snprintf(mode, sizeof mode, "%04o", node.st_mode & 07777u);
        return {Trouble::KeptOut,
                {{"OWNER", UserName(node.st_uid)}, {"GROUP", group}, {"MODE", mode}}};
    }
    if (UserIsListedInGroup(node.st_gid)) return {Trouble::JoinedAfterLogin, {{"GROUP", group}}};
    return {Trouble::NotInGroup, {{"GROUP", group}, {"USER", UserName(geteuid())}}};
}

// Whether the port can't do even the settings with which the library opens it.
bool RefusesSettings(int port) {
    termios before{};
    if (tcgetattr(port, &before) != 0) return true;
    termios usual = before;
    cfsetspeed(&usual, B9600);
    const bool refuses = tcsetattr(port, TCSANOW, &usual) != 0;
    tcsetattr(port, TCSANOW, &before);
    return refuses;
}

Diagnosis Explain(const std::string& device, int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return Diagnose(device, WhyForbidden(device));
        case EBUSY:
            return Diagnose(device, FindingFor(FindHolder(device), device));
        case ENOENT:
            return Diagnose(device, {Trouble::NoSuchPort});
        case ENODEV:
        case ENXIO:
        case EIO:
            return Diagnose(device, {Trouble::DeviceHasGone, {{"REASON", std::strerror(error)}}});
        default:
            return {ExitCode::PortFailed, device + ": " + std::strerror(error)};
    }
}

// Why the library has not opened a port that this program opens.
Finding WhyTheLibraryDidNot(const std::string& device, bool refusesSettings) {
    // Qt takes the lock file of a program that has ended away, unless it is another user's.
    if (access(LockFile(device).c_str(), F_OK) == 0)
        return {Trouble::LeftLock, {{"FILE", LockFile(device)}}};
    return {refusesSettings ? Trouble::EverySettingRefused : Trouble::OpensByNow};
}

}  // namespace

std::string HolderOf(const std::string& device) {
    return TextOf(FindHolder(device));
}

std::optional<Diagnosis> WhyHeld(const std::string& device) {
    const Holder holder = FindHolder(device);
    if (holder.process == 0) return std::nullopt;
    return Diagnose(device, FindingFor(holder, device));
}

Diagnosis WhyLocked(const std::string& device) {
    return Diagnose(device, {Trouble::LeftLock, {{"FILE", LockFile(device)}}});
}

Diagnosis WhyNotOpened(const std::string& device) {
    const int descriptor = open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return Explain(device, errno);
    const bool terminal = isatty(descriptor) != 0;
    const bool refuses = terminal && RefusesSettings(descriptor);
    close(descriptor);
    if (!terminal) return Diagnose(device, {Trouble::NoPortBehindNode});
    if (const auto held = WhyHeld(device)) return *held;
    return Diagnose(device, WhyTheLibraryDidNot(device, refuses));
}

}  // namespace tool
