#include "simulator/BenchDirectory.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "simulator/line/VirtualLineState.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

/// Opening a port makes and removes a lock file, which takes milliseconds on some disks.
constexpr char kInMemory[] = "/dev/shm";

/// A line takes some pages; some hundreds of instruments have room.
constexpr unsigned long long kRoomOfABench = 16ULL * 1024 * 1024;

constexpr char kPrefix[] = "wbalance-lines-";
constexpr char kClaimName[] = "claim";

[[noreturn]] void FailWith(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

bool HasRoom(const fs::path& place) {
    struct statvfs about = {};
    if (::statvfs(place.c_str(), &about) != 0) return false;
    return static_cast<unsigned long long>(about.f_bavail) * about.f_frsize >= kRoomOfABench;
}

fs::path PlaceWithRoom() {
    const auto places = BenchDirectory::Places();
    for (const auto& place : places)
        if (HasRoom(place)) return place;
    return places.back();
}

fs::path Create() {
    std::string name = (PlaceWithRoom() / (std::string(kPrefix) + "XXXXXX")).string();
    if (!::mkdtemp(name.data())) FailWith("cannot create " + name);
    return name;
}

/// With one descriptor at a time, which may be the last.
void RemoveTree(const fs::path& directory) {
    std::vector<fs::path> entries;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(directory, ignored))
        entries.push_back(entry.path());
    for (const auto& entry : entries) {
        if (fs::is_directory(fs::symlink_status(entry, ignored)))
            RemoveTree(entry);
        else
            fs::remove(entry, ignored);
    }
    fs::remove(directory, ignored);
}

/// The file gets its name when it is locked: who finds it unlocked knows that the bench is dead.
int Claim(const fs::path& directory) {
    const fs::path unlocked = directory / (std::string(kClaimName) + ".new");
    const int descriptor = ::open(unlocked.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
        ::rename(unlocked.c_str(), (directory / kClaimName).c_str()) == 0)
        return descriptor;
    const int error = errno;
    if (descriptor >= 0) ::close(descriptor);
    RemoveTree(directory);
    errno = error;
    FailWith("cannot claim " + directory.string());
}

bool IsOfThisUser(const fs::path& directory) {
    struct stat found = {};
    return ::lstat(directory.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == ::geteuid();
}

void RemoveIfDead(const fs::path& directory) {
    const int descriptor = ::open((directory / kClaimName).c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) return;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) RemoveTree(directory);
    ::close(descriptor);
}

}  // namespace

BenchDirectory::BenchDirectory() {
    for (const auto& directory : All())
        RemoveIfDead(directory);
    path_ = Create();
    claim_ = Claim(path_);
    ::setenv(kVirtualLinesVariable, path_.c_str(), 1);
}

BenchDirectory::~BenchDirectory() {
    ::unsetenv(kVirtualLinesVariable);
    ::close(claim_);  // first: removing takes a descriptor, which may be the last
    RemoveTree(path_);
}

std::vector<fs::path> BenchDirectory::Places() {
    const char* chosen = ::getenv("TMPDIR");
    if (chosen && *chosen) return {fs::absolute(chosen)};
    if (::access(kInMemory, R_OK | W_OK | X_OK) != 0) return {fs::temp_directory_path()};
    return {kInMemory, fs::temp_directory_path()};
}

std::vector<fs::path> BenchDirectory::All() {
    std::vector<fs::path> found;
    std::error_code ignored;
    for (const auto& place : Places())
        for (const auto& entry : fs::directory_iterator(place, ignored))
            if (IsName(entry.path()) && IsOfThisUser(entry.path())) found.push_back(entry.path());
    return found;
}

bool BenchDirectory::IsName(const fs::path& directory) {
    return directory.filename().string().rfind(kPrefix, 0) == 0;
}

}  // namespace simulator
